// What a local server shows at one time: an immutable snapshot. Requests are answered from it
// alone, so that no request leads to a file.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tarnwick {

struct SiteResource {
    std::string_view type;                    // media type; constant text
    std::shared_ptr<const std::string> bytes; // never null
};

struct Site {
    std::uint64_t version = 0; // ascending
    // By path without the first "/", decoded: "" is the first page, "e/a b.metal" that of an
    // episode.
    std::map<std::string, SiteResource, std::less<>> resources;
};

} // namespace tarnwick
