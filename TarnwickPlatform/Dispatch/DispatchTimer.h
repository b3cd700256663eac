// A repeating timer on a queue.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"

#include <functional>
#include <memory>
#include <mutex>

namespace tarnwick {

class DispatchTimer {
  public:
    // Starts at once: calls `handler` on `queue` after `interval` seconds and then every `interval`
    // seconds, without drift. If the queue is late, missed calls become one, and later calls keep
    // their times. `interval` is clamped to [0.001, 1e9] s and must not be NaN.
    DispatchTimer(DispatchQueue& queue, double interval, std::function<void()> handler);
    // Cancels.
    ~DispatchTimer();
    DispatchTimer(const DispatchTimer&) = delete;
    DispatchTimer& operator=(const DispatchTimer&) = delete;

    // Stops calling the handler and releases it. Any thread, also the handler; may be called again.
    // Does not block: a call of the handler that is under way on another thread runs to its end
    // (the queue's sync() waits for it), and the handler lives until then.
    void cancel();

  private:
    struct Source;

    std::mutex mutex_;               // guards source_
    std::shared_ptr<Source> source_; // null when cancelled; shared with a call under way
};

} // namespace tarnwick
