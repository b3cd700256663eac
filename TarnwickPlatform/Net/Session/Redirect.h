// Where a redirect leads.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

namespace tarnwick {

// Whether a session requests such an address: http or https, without user name and password.
bool canBeRequested(const URL& url);

// What to send next when `response` answers `request`, by the rules that URLSession states
// (RFC 9110, 15.4; method and body as browsers have it, Fetch Standard, 4.4). Absent when it is no
// redirect, or leads where a session does not go.
std::optional<URLRequest> redirected(const URLRequest& request, const URLResponse& response);

} // namespace tarnwick
