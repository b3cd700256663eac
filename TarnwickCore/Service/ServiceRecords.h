// The answers of the sharing service, as records.
#pragma once

#include "TarnwickCore/Text/Date.h"
#include "TarnwickPlatform/Net/URL.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tarnwick {

// Each decode() reads a JSON object and ignores all members except those named here. It returns
// nothing if a member is missing or has a wrong type; an optional member may be missing or null. An
// address must be http or https. Accepts any bytes.

// A sign-in that has begun: the user confirms `code` on the page `url`.
struct LinkStart {
    std::string device; // sent with each poll; a secret
    std::string code;
    URL url;
    double interval = 5;         // seconds between polls, [1, 60]
    std::optional<Date> expires; // end of the validity of the code

    bool operator==(const LinkStart&) const = default;

    // "interval" is ignored if it is not a number, and clamped to its range. "expires" is a number
    // or a text for dateOf(). A number below 86400 is seconds from `now`; above 100000000000,
    // milliseconds since 1970; otherwise seconds since 1970. An invalid "expires" is ignored.
    static std::optional<LinkStart> decode(std::string_view json, Date now);
};

// The user has confirmed: the account and its token.
struct Approved {
    std::string token; // a secret
    std::string email;
    std::optional<std::string> handle; // the public name; none until the account chooses one

    bool operator==(const Approved&) const = default;
    static std::optional<Approved> decode(std::string_view json);
};
struct LinkPending { // not confirmed yet: poll again after the interval
    bool operator==(const LinkPending&) const = default;
};
struct LinkGone { // expired or withdrawn: start again
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
