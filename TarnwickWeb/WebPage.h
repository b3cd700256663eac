// Pages of HTML with episodes. They request nothing from other places, and their Content-Security-
// Policy permits only their own script and style, by digests. Titles and descriptions are text.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// What a page shows where an episode cannot be drawn: addresses of files beside the page, or data:
// addresses.
struct WebFallback {
    std::string still; // a picture
    std::string movie; // an MP4 movie, which is repeated; empty without one
};

struct WebEpisode {
    std::string title;
    std::string teaches;  // one line; may be empty
    std::string document; // of webDocument()
    std::optional<WebFallback> fallback{};
};

// The page of one episode. It contains the player and the document.
std::string webPage(const WebEpisode& episode);

struct WebGalleryEntry {
    std::string title;
    std::string teaches;
    std::string address; // of the episode's page, relative to the gallery
    std::string still;   // address of a picture; empty without one
};

// The page that lists the pages of episodes.
std::string webGallery(std::span<const WebGalleryEntry> entries);

// The address of a file beside a page: RFC 3986, 2.1.
std::string webAddress(std::string_view fileName);

// "data:image/jpeg;base64,..." (RFC 2397)
std::string dataAddress(std::string_view mediaType, std::string_view bytes);

} // namespace tarnwick
