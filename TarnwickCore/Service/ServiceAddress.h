// Checks of addresses of the service.
#pragma once

#include "TarnwickPlatform/Net/URL.h"

namespace tarnwick {

// Whether the host is "localhost" or "127.0.0.1", as for a service that its developers run.
inline bool isOnThisMachine(const URL& url) {
    return url.host() == "localhost" || url.host() == "127.0.0.1"; // lower case already
}

// Whether nobody on the network can read or change the transfer.
inline bool isPrivate(const URL& url) {
    return url.scheme() == "https" || isOnThisMachine(url);
}

} // namespace tarnwick
