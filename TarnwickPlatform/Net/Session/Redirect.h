// The request that follows a redirect.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

namespace tarnwick {

// Whether a session requests the address: http or https, without user name and password.
bool canBeRequested(const URL& url);

// The request to send after `response` to `request`, by the rules of URLSession (RFC 9110, 15.4;
// method and body as in browsers, Fetch Standard, 4.4). Absent if `response` is not a redirect that
// is followed.
std::optional<URLRequest> redirected(const URLRequest& request, const URLResponse& response);

} // namespace tarnwick
