// A link by which the sharing service's pages open a shader in the program:
// tarnwick://open?src=ADDRESS.
#pragma once

#include "TarnwickCore/Service/ServiceHosts.h"
#include "TarnwickPlatform/Net/URL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tarnwick {

// Links come from anywhere, so that only .metal files of the service's own site pass: over https,
// with no user's name and no port. Pure; any bytes are taken. May be called from any thread.
struct OpenLink {
    URL source;                      // of the file: no user's name, no query, no fragment
    std::optional<std::string> item; // what it belongs to, in ForkedFrom's grammar
    std::string fileName;            // to save it under: a safe one, ends in ".metal"

    bool operator==(const OpenLink&) const = default;

    static constexpr std::string_view siteHost = tarnwick::siteHost;

    struct Problem {
        enum class Kind : std::uint8_t { notAllowed, notAnOpenLink, missingSource };

        Kind kind = Kind::notAnOpenLink;
        std::string reason; // of notAllowed: "the address is not https"

        bool operator==(const Problem&) const = default;

        std::string description() const; // the user's sentence
    };

    // A service on this machine, for its developers: http and ports are allowed for it.
    enum class Localhosts : std::uint8_t { refused, allowed };

    // Scheme and host of the link count in any case. Of several src the first is taken, also when
    // it is empty. An address that URL::parse refuses is none. Hosts are compared, and named in
    // reasons, with ASCII's letters in lower case and without looking behind their names.
    static std::variant<OpenLink, Problem> parse(std::string_view url, Localhosts localhosts);

    struct Description {
        std::optional<std::string> item;
        std::string fileName;

        bool operator==(const Description&) const = default;
    };

    // What a file of the site is, by its path with escapes decoded: episode-NN-NAME/source.metal,
    // episode-NN-NAME/stages/STAGE.metal, s/ID/source.metal, or any other. These names are lower
    // case; digits and letters are ASCII's. `source` keeps the path as it was written.
    static Description describe(std::string_view path);
};

} // namespace tarnwick
