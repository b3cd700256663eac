// Passes what controls send from the receiving threads to the window's thread.
#pragma once

#include "player/Control/ControlSource.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace tarnwick::player {

// Keeps the newest message of each control, so that a flood costs the reader no more than its
// controls. Any thread.
class ControlMail {
  public:
    static constexpr std::size_t mostControls = 4096; // between two takes; more are dropped
    static constexpr std::size_t mostValues = 256;    // of a control; the oldest are dropped

    // `wake` is called, on the thread that posts, when there is something to take after a take
    // that left nothing. It must not block.
    explicit ControlMail(std::function<void()> wake) : wake_(std::move(wake)) {}

    void post(ControlArrival arrival);

    // The newest of each control, in the order of their first messages. A control that went to 0
    // after another value arrives at that value now and at 0 with the next take, so that a short
    // press is not lost.
    std::vector<ControlArrival> take();
    bool isEmpty() const;
    std::uint64_t dropped() const; // messages, since the start

  private:
    struct Waiting {
        std::uint64_t order = 0;
        ControlArrival arrival;
        std::optional<ControlArrival> release{}; // after it
    };

    bool add(ControlArrival arrival); // whether to wake

    std::function<void()> wake_;
    mutable std::mutex mutex_; // guards the rest
    std::map<ControlSource, Waiting> waiting_;
    std::uint64_t order_ = 0, dropped_ = 0;
};

} // namespace tarnwick::player
