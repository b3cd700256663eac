// What hears of a request under way and decides about its redirects.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

#include <cstdint>
#include <optional>

namespace tarnwick {

// Calls come one after the other on the session's own thread and hold up everything that the
// session does. They must not throw, wait for the session or destroy it.
class TaskDelegate {
  public:
    virtual ~TaskDelegate() = default;

    // `sent` of `expected` bytes of the body have been handed to the system. `sent` grows from call
    // to call; all of them are reported before the answer is there. A redirect that keeps the body
    // sends it anew.
    virtual void didSendBody(std::int64_t /*sent*/, std::int64_t /*expected*/) {}

    // A redirect to what `next` asks for. Gives the request to send, as it is or changed, or none:
    // then `response` itself is the answer, with its own body.
    virtual std::optional<URLRequest> willRedirect(const URLResponse& /*response*/,
                                                   const URLRequest& next) {
        return next;
    }
};

} // namespace tarnwick
