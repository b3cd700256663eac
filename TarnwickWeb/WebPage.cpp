#include "TarnwickWeb/WebPage.h"

#include "TarnwickCore/Text/SHA256.h"
#include "TarnwickWeb/Base64.h"
#include "TarnwickWeb/Runtime.h"

#include <cctype>
#include <initializer_list>

namespace tarnwick {
namespace {

// clang-format off

constexpr std::string_view episodeStyle = R"css(
html, body { margin: 0; height: 100%; background: #0b0b0c; color: #f2efe9; font: 16px/1.4 system-ui, sans-serif; }
tarnwick-episode { height: 100vh; height: 100dvh; }
img, video { width: 100%; height: 100%; object-fit: cover; }
noscript { display: block; padding: 1em; }
)css";

constexpr std::string_view galleryStyle = R"css(
body { margin: 0 auto; padding: 1.2em; max-width: 84em; color-scheme: dark; background: #0b0b0c; color: #f2efe9;
    font: 16px/1.4 system-ui, sans-serif; }
h1 { margin: 0.2em 0 0.8em; font-size: 1.6em; }
ul { list-style: none; margin: 0; padding: 0; display: grid; gap: 1.2em;
    grid-template-columns: repeat(auto-fill, minmax(min(19em, 100%), 1fr)); }
a { display: block; height: 100%; color: inherit; text-decoration: none; background: #17171a; border-radius: 12px;
    overflow: hidden; }
a:hover { background: #222226; }
a:focus-visible { outline: 3px solid #e0a050; outline-offset: 3px; }
h2, p { margin: 0; padding: 0 1rem; overflow-wrap: anywhere; }
h2 { padding-top: 0.9rem; font-size: 1.1em; }
p { padding: 0.2rem 1rem 1rem; color: #b9b4aa; font-size: 0.92em; }
h2:last-child { padding-bottom: 1rem; }
.picture { position: relative; aspect-ratio: 16 / 9; background: linear-gradient(160deg, #26262c, #101013); }
img, iframe { position: absolute; inset: 0; width: 100%; height: 100%; border: 0; object-fit: cover; }
iframe { pointer-events: none; }
)css";

// clang-format on

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

// Text of HTML, also in an attribute between double quotes.
std::string escaped(std::string_view text) {
    std::string out;
    for (const char character : text)
        switch (character) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&#39;";
            break;
        default:
            out += character;
        }
    return out;
}

// JSON that ends no element of a script. "<" is only in its strings.
std::string inScript(std::string_view json) {
    std::string out;
    for (const char character : json)
        if (character == '<')
            out += "\\u003c";
        else
            out += character;
    return out;
}

// The source expression of a text (Content Security Policy Level 3, 2.3.1).
std::string digestSource(std::string_view text) {
    SHA256 digest;
    digest.update(text);
    const std::string digits = digest.finish();
    std::string bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    return "'sha256-" + base64(bytes) + "'";
}

struct Policy {
    std::string_view style, script; // may be empty
    std::string_view more = {};     // other directives
};

std::string policyText(const Policy& policy) {
    std::string text = "default-src 'none'; img-src 'self' data:; media-src 'self' data:; "
                       "base-uri 'none'; form-action 'none'; style-src " +
                       digestSource(policy.style);
    if (!policy.script.empty())
        text += "; script-src " + digestSource(policy.script);
    return text.append(policy.more);
}

std::string head(std::string_view title, const Policy& policy) {
    return joined({"<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n",
                   "<meta http-equiv=\"Content-Security-Policy\" content=\"",
                   escaped(policyText(policy)), "\">\n",
                   "<meta name=\"referrer\" content=\"no-referrer\">\n",
                   "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n",
                   // Browsers ask the server for another one.
                   "<link rel=\"icon\" href=\"data:,\">\n", "<title>", escaped(title),
                   "</title>\n<style>", policy.style, "</style>\n"});
}

std::string description(std::string_view text) {
    return text.empty() ? "" : "<meta name=\"description\" content=\"" + escaped(text) + "\">\n";
}

std::string fallbackMarkup(const WebEpisode& episode) {
    if (!episode.fallback)
        return "";
    const auto& [still, movie] = *episode.fallback;
    if (movie.empty())
        return joined(
            {"<img src=\"", escaped(still), "\" alt=\"", escaped(episode.title), "\">\n"});
    return joined({"<video src=\"", escaped(movie), "\" poster=\"", escaped(still),
                   "\" aria-label=\"", escaped(episode.title),
                   "\" loop muted playsinline preload=\"none\"></video>\n"});
}

} // namespace

std::string webPage(const WebEpisode& episode) {
    const std::string_view script = webRuntime();
    return joined({head(episode.title, {.style = episodeStyle, .script = script}),
                   description(episode.teaches), "</head>\n<body>\n",
                   "<tarnwick-episode of=\"episode\" whole>\n", fallbackMarkup(episode),
                   "</tarnwick-episode>\n",
                   "<noscript>This episode is drawn by a script, which the browser does not "
                   "run.</noscript>\n",
                   "<script type=\"application/json\" id=\"episode\">", inScript(episode.document),
                   "</script>\n<script type=\"module\">", script, "</script>\n</body>\n</html>\n"});
}

std::string webGallery(std::span<const WebGalleryEntry> entries) {
    const std::string_view script = webGalleryScript();
    std::string text =
        head("Episodes", {.style = galleryStyle, .script = script, .more = "; frame-src 'self'"}) +
        "</head>\n<body>\n<h1>Episodes</h1>\n<ul>\n";
    for (const WebGalleryEntry& entry : entries) {
        text += "<li><a class=\"episode\" href=\"" + escaped(entry.address) +
                "\"><div class=\"picture\">";
        if (!entry.still.empty())
            text += "<img src=\"" + escaped(entry.still) + "\" alt=\"\" loading=\"lazy\">";
        text += "</div><h2>" + escaped(entry.title) + "</h2>";
        if (!entry.teaches.empty())
            text += "<p>" + escaped(entry.teaches) + "</p>";
        text += "</a></li>\n";
    }
    return joined(
        {text, "</ul>\n<script type=\"module\">", script, "</script>\n</body>\n</html>\n"});
}

std::string webAddress(std::string_view fileName) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string address;
    for (const char character : fileName) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isPlain =
            byte < 0x80 && (std::isalnum(byte) ||
                            std::string_view("-._~").find(character) != std::string_view::npos);
        if (isPlain)
            address += character;
        else
            (address += '%').append({digits[byte >> 4], digits[byte & 15]});
    }
    return address;
}

std::string dataAddress(std::string_view mediaType, std::string_view bytes) {
    return joined({"data:", mediaType, ";base64,", base64(bytes)});
}

} // namespace tarnwick
