// What a request is answered with. Pure.
#pragma once

#include "TarnwickServe/AccessToken.h"
#include "TarnwickServe/HTTP/Connection.h"
#include "TarnwickServe/Site.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// Of a request's head (RFC 9112, 3 and 5).
struct AskedRequest {
    std::string method;
    std::string path;               // decoded, without a query
    std::vector<std::string> hosts; // the values of its fields Host
};

enum class AnswerKind : std::uint8_t { bytes, events };

struct SiteAnswer {
    int status = 200;
    AnswerKind kind = AnswerKind::bytes;
    SiteResource resource{};     // of `bytes`; without bytes if the status is an error
    std::string_view sentence{}; // of an error
};

// Requests must name the address that they came to, so that a page of another site whose name is
// given this address (DNS rebinding) is refused. With a token, each path begins with it.
SiteAnswer answerOf(const AskedRequest& request, const Site& site,
                    const Connection::Address& address, const std::optional<AccessToken>& token);

// The values of Host that name the address.
std::vector<std::string> hostsOf(const Connection::Address& address);

inline constexpr std::string_view eventsPath = "events";

} // namespace tarnwick
