// The frames that the GPU has not finished.
#pragma once

#include "TarnwickBase/FrameTimes.h"
#include "TarnwickBase/WaitedTime.h"
#include "TarnwickGPU/Commands.h"

#include <cstddef>
#include <vector>

namespace tarnwick {

// One thread at a time.
class FramesInFlight {
  public:
    // At most `most` at a time; one until the first is done, which shows how long frames take.
    explicit FramesInFlight(std::size_t most) : most_(most) { frames_.reserve(most); }

    // Adds a frame that was just committed. Requires room for it.
    void add(gpu::CommandBuffer commands);
    // Waits at most that many seconds for room for one more frame. Returns whether there is room.
    bool waitForRoom(double seconds);
    // Waits at most that many seconds until no frame is left. Returns whether none is left.
    bool waitUntilDrawn(double seconds);
    // Whether frames take too long. Never blocks.
    bool takeTooLong();
    // Leaves out what the GPU has not begun of the frames, which are done soon.
    void abandon();
    // Whether the next frame may take as long as a submission that is divided. True before the
    // first frame is done.
    bool mayBeSlow() const { return !isFirstDone_ || lastSeconds_ > slowFrame; }
    // FrameTimes.h
    void setLongestFrame(double seconds) { times_.setLongestFrame(seconds); }

  private:
    static constexpr double slowFrame = 0.05; // seconds

    struct Frame {
        gpu::CommandBuffer commands;
        double begin; // seconds of now(): committed, and the one before it done
    };

    // Seconds, without the time while the process was stopped (Ctrl-Z, a locker that suspends the
    // saver), which does not count for any frame.
    double now();
    bool waitForFewer(std::size_t count, double seconds);
    void takeOutOldest();

    std::size_t most_;
    std::vector<Frame> frames_; // oldest first
    FrameTimes times_;
    WaitedTime clock_;
    bool isFirstDone_ = false;
    double lastSeconds_ = 0; // that the last frame took
};

} // namespace tarnwick
