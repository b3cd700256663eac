// Receives the progress of a request, and decides about its redirects.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

#include <cstdint>
#include <optional>

namespace tarnwick {

// The session calls on its own thread, one call at a time, and does nothing else meanwhile. Calls
// must not throw, wait for the session or destroy it.
class TaskDelegate {
  public:
    virtual ~TaskDelegate() = default;

    // `sent` of `expected` bytes of the body have been given to the system. `sent` increases from
    // call to call; the last call comes before the answer. A redirect that keeps the body sends it
    // again.
    virtual void didSendBody(std::int64_t /*sent*/, std::int64_t /*expected*/) {}

    // The server redirects to `next`. Returns the request to send, which may be changed, or
    // nothing: then `response` is the answer, with its own body.
    virtual std::optional<URLRequest> willRedirect(const URLResponse& /*response*/,
                                                   const URLRequest& next) {
        return next;
    }
};

} // namespace tarnwick
