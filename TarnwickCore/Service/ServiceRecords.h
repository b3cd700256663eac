// What the sharing service answers, as records.
#pragma once

#include "TarnwickCore/Text/Date.h"
#include "TarnwickPlatform/Net/URL.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tarnwick {

// Each decode() reads a JSON object and looks at the members named here alone. It gives nothing
// when a member is missing or has a wrong type; a member that is optional may be missing or null.
// An address must be one of http or https, as it is for a browser. Any bytes are taken.

// A sign-in that has begun: the user confirms `code` on the page `url`.
struct LinkStart {
    std::string device; // what polls send back; a secret
    std::string code;
    URL url;
    double interval = 5;         // seconds between polls, [1, 60]
    std::optional<Date> expires; // when the code is no longer valid

    bool operator==(const LinkStart&) const = default;

    // "interval" counts as absent when it is no number, and is brought into its range. "expires" is
    // a number of seconds from `now` when below 86400, else since 1970 in seconds, or in
    // milliseconds when over 100000000000; or text for dateOf(). It never stops the decoding.
    static std::optional<LinkStart> decode(std::string_view json, Date now);
};

// The user has confirmed: the account and what opens it.
struct Approved {
    std::string token; // a secret
    std::string email;
    std::optional<std::string> handle; // the name others see; none until the account chooses one

    bool operator==(const Approved&) const = default;
    static std::optional<Approved> decode(std::string_view json);
};
struct LinkPending { // not confirmed yet: ask again after the interval
    bool operator==(const LinkPending&) const = default;
};
struct LinkGone { // expired or withdrawn: begin anew
    bool operator==(const LinkGone&) const = default;
};
using LinkPoll = std::variant<Approved, LinkPending, LinkGone>;

// The account that is signed in.
struct Me {
    std::string email;
    std::optional<std::string> handle;

    bool operator==(const Me&) const = default;
    static std::optional<Me> decode(std::string_view json);
};

// A shader that has been shared.
struct Shared {
    std::string id;
    URL url; // its page

    bool operator==(const Shared&) const = default;
    static std::optional<Shared> decode(std::string_view json);
};

} // namespace tarnwick
