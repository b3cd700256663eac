// The records of a request and its answer.
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
    Headers headers; // the session adds its additional ones if they are not here
    // Any bytes. Sent with its length, but not at all if it is empty and the method is GET or HEAD.
    std::string body;
    // Seconds for the whole request, from its start to the answer's last byte, with redirects; > 0.
    // Default: the session's timeout.
    std::optional<double> timeout;

    bool operator==(const URLRequest&) const = default;
};

struct URLResponse {
    int status = 0; // [200, 999]
    URL url;        // of the answered request, after all redirects
    Headers headers;
    std::optional<std::int64_t> expectedLength; // bytes of the body, as announced
};

// A whole answer in memory.
struct Answer {
    URLResponse response;
    std::string body; // any bytes
};

} // namespace tarnwick
