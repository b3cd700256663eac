// Which addresses a service may be talked to at.
#pragma once

#include "TarnwickPlatform/Net/URL.h"

namespace tarnwick {

// The host is "localhost" or "127.0.0.1", as for a service that its developers run.
inline bool isOnThisMachine(const URL& url) {
    return url.host() == "localhost" || url.host() == "127.0.0.1"; // lower case already
}

// Nobody on the network reads or changes what goes there.
inline bool isPrivate(const URL& url) {
    return url.scheme() == "https" || isOnThisMachine(url);
}

} // namespace tarnwick
