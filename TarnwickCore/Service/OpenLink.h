// The links that open a shader of the sharing service in the program: tarnwick://open?src=ADDRESS.
#pragma once

#include "TarnwickCore/Service/ServiceHosts.h"
#include "TarnwickPlatform/Net/URL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tarnwick {

// Links may come from anywhere, so only .metal files of the site of the service are accepted, over
// https, without user name and port. Pure; accepts any bytes. May be called from any thread.
struct OpenLink {
    URL source;                      // of the file: no user name, no query, no fragment
    std::optional<std::string> item; // the item of the file, in the grammar of ForkedFrom
    std::string fileName;            // for saving it: a safe name that ends in ".metal"

    bool operator==(const OpenLink&) const = default;

    static constexpr std::string_view siteHost = tarnwick::siteHost;

    struct Problem {
        enum class Kind : std::uint8_t { notAllowed, notAnOpenLink, missingSource };

        Kind kind = Kind::notAnOpenLink;
        std::string reason; // for notAllowed: "the address is not https"

        bool operator==(const Problem&) const = default;

        std::string description() const; // one sentence for the user
    };

    // Whether http and ports are allowed for a service on this machine, for its developers.
    enum class Localhosts : std::uint8_t { refused, allowed };

    // Scheme and host of the link are compared in any case. If there are several src, the first is
    // used, even if it is empty. An address that URL::parse rejects is missing. Hosts are compared,
    // and named in reasons, in ASCII lower case and without DNS lookups.
    static std::variant<OpenLink, Problem> parse(std::string_view url, Localhosts localhosts);

    struct Description {
        std::optional<std::string> item;
        std::string fileName;

        bool operator==(const Description&) const = default;
    };

    // The item and file name of a file of the site, by its decoded path:
    // episode-NN-NAME/source.metal, episode-NN-NAME/stages/STAGE.metal, s/ID/source.metal, or any
    // other path. These names are lower case; digits and letters are ASCII. `source` keeps the path
    // as written.
    static Description describe(std::string_view path);
};

} // namespace tarnwick
