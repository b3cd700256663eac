// What is asked of a server, and what it answers.
#pragma once

#include "TarnwickPlatform/Net/Headers.h"
#include "TarnwickPlatform/Net/URL.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick {

struct URLRequest {
    URL url; // http or https, without user name and password
    std::string method = "GET";
    Headers headers;  // go before the session's additional ones
    std::string body; // sent with its length unless it is empty and the method is GET or HEAD
    // Seconds for the whole request, redirects and the answer's last byte included; > 0. Absent:
    // the session's.
    std::optional<double> timeout;

    bool operator==(const URLRequest&) const = default;
};

struct URLResponse {
    int status = 0; // [200, 999]
    URL url;        // of the request that this answers, the last of the redirects
    Headers headers;
    std::optional<std::int64_t> expectedLength; // bytes of the body as announced
};

// An answer that is held in memory as a whole.
struct Answer {
    URLResponse response;
    std::string body; // any bytes
};

} // namespace tarnwick
