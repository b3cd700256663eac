// A timer that fires on a queue again and again.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"

#include <functional>
#include <memory>
#include <mutex>

namespace tarnwick {

class DispatchTimer {
  public:
    // Begins at once: `handler` is called on `queue` after `interval` seconds and then every
    // `interval` seconds, on a grid that does not drift and as exactly as the system can. When the
    // queue is late, the firings missed count as one, and the grid stays. An interval below 1 ms, a
    // negative one too, is 1 ms; one above 10^9 s is that. It is not NaN.
    DispatchTimer(DispatchQueue& queue, double interval, std::function<void()> handler);
    // Cancels.
    ~DispatchTimer();
    DispatchTimer(const DispatchTimer&) = delete;
    DispatchTimer& operator=(const DispatchTimer&) = delete;

    // Calls the handler no more and lets it go. May be called from any thread, from the handler
    // too, and again. Does not wait: seen from another thread a call that has begun runs to its end
    // (the queue's sync() waits for it), and the handler lives as long.
    void cancel();

  private:
    struct Source;

    std::mutex mutex_;               // over source_
    std::shared_ptr<Source> source_; // null when cancelled; shared with a call under way
};

} // namespace tarnwick
