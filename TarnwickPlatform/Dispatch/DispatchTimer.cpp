#include "TarnwickPlatform/Dispatch/DispatchTimer.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Dispatch/DispatchContext.h"

#include <asio/steady_timer.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>

namespace tarnwick {
namespace {

using Clock = asio::steady_timer::clock_type;

constexpr double shortest = 0.001, longest = 1e9; // seconds; the clock counts to about 9 * 10^9

Clock::duration durationOf(double seconds) {
    precondition(!std::isnan(seconds), "a timer's interval is not NaN");
    return std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(std::clamp(seconds, shortest, longest)));
}

// The first time after `now` in steps of `interval` from `last`, which has passed.
Clock::time_point nextOf(Clock::time_point last, Clock::duration interval, Clock::time_point now) {
    return last + ((now - last) / interval + 1) * interval;
}

} // namespace

// Only the timer's owner and a call under way own it. So two threads never use the timer at once,
// and a wait finds either a whole source or none.
struct DispatchTimer::Source : std::enable_shared_from_this<Source> {
    Source(std::shared_ptr<DispatchContext> context, double seconds, std::function<void()> handler)
        : context(std::move(context)), timer(this->context->io), interval(durationOf(seconds)),
          handler(std::move(handler)) {}

    void wait(Clock::time_point moment) {
        timer.expires_at(moment);
        timer.async_wait([source = weak_from_this()](const asio::error_code& failure) {
            if (const auto alive = failure ? nullptr : source.lock())
                alive->fire();
        });
    }

    void fire() {
        if (cancelled)
            return;
        handler();
        if (!cancelled)
            wait(nextOf(timer.expiry(), interval, Clock::now()));
    }

    std::shared_ptr<DispatchContext> context; // declared before the timer, which uses it
    asio::steady_timer timer;
    const Clock::duration interval;
    const std::function<void()> handler;
    std::atomic<bool> cancelled = false;
};

DispatchTimer::DispatchTimer(DispatchQueue& queue, double interval, std::function<void()> handler)
    : source_(std::make_shared<Source>(queue.context_, interval, std::move(handler))) {
    source_->wait(Clock::now() + source_->interval);
}

DispatchTimer::~DispatchTimer() {
    cancel();
}

void DispatchTimer::cancel() {
    std::shared_ptr<Source> dropped; // destroyed without the lock: it may call cancel()
    const std::lock_guard lock(mutex_);
    dropped.swap(source_);
    if (dropped)
        dropped->cancelled = true;
}

} // namespace tarnwick
