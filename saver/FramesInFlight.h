// The frames that the GPU has still to draw.
#pragma once

#include "TarnwickBase/WaitedTime.h"
#include "TarnwickGPU/Commands.h"
#include "saver/FrameTimes.h"

#include <cstddef>
#include <vector>

namespace tarnwick {

// One thread at a time.
class FramesInFlight {
  public:
    // At most `most` at a time; one until the first is done, which shows how long they take.
    explicit FramesInFlight(std::size_t most) : most_(most) { frames_.reserve(most); }

    // Takes a frame that was committed just now. There is room for it.
    void add(gpu::CommandBuffer commands);
    // Waits for room for one more, at most so many seconds; whether there is.
    bool waitForRoom(double seconds);
    // Waits until none is left, at most so many seconds; whether none is.
    bool waitUntilDrawn(double seconds);
    // Whether they take too long. Never blocks.
    bool takeTooLong();

  private:
    struct Frame {
        gpu::CommandBuffer commands;
        double begin; // seconds of now(): committed, and the one before it done
    };

    // Seconds, without the time for which the process was stopped (Ctrl-Z, a locker that suspends
    // the saver): that is no frame's.
    double now();
    bool waitForFewer(std::size_t count, double seconds);
    void takeOutOldest();

    std::size_t most_;
    std::vector<Frame> frames_; // oldest first
    FrameTimes times_;
    WaitedTime clock_;
    bool isFirstDone_ = false;
};

} // namespace tarnwick
