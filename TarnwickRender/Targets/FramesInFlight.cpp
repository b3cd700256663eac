#include "TarnwickRender/Targets/FramesInFlight.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tarnwick {

// WaitedTime is right if it is asked more than once in its longest step.
static constexpr double longestWait = 0.5; // seconds

double FramesInFlight::now() {
    return std::chrono::duration<double>(clock_.look()).count();
}

void FramesInFlight::add(gpu::CommandBuffer commands) {
    frames_.push_back({std::move(commands), now()});
}

bool FramesInFlight::waitForRoom(double seconds) {
    return waitForFewer(isFirstDone_ ? most_ : 1, seconds);
}

bool FramesInFlight::waitUntilDrawn(double seconds) {
    return waitForFewer(1, seconds);
}

bool FramesInFlight::waitForFewer(std::size_t count, double seconds) {
    const double end = now() + seconds;
    while (frames_.size() >= count) {
        const double left = end - now();
        if (frames_.front().commands.waitUntilCompleted(std::clamp(left, 0.0, longestWait)))
            takeOutOldest();
        else if (left <= 0)
            return false;
    }
    return true;
}

void FramesInFlight::takeOutOldest() {
    const double end = now();
    const Frame& oldest = frames_.front();
    lastSeconds_ = end - oldest.begin;
    times_.add(lastSeconds_, oldest.commands.hitLoopBudget());
    frames_.erase(frames_.begin());
    if (!frames_.empty())
        frames_.front().begin = end;
    isFirstDone_ = true;
}

void FramesInFlight::abandon() {
    for (Frame& frame : frames_)
        frame.commands.abandon();
}

bool FramesInFlight::takeTooLong() {
    waitForFewer(1, 0);
    if (frames_.empty())
        return times_.areTooLong();
    const Frame& oldest = frames_.front();
    return times_.areTooLong(now() - oldest.begin, oldest.commands.hitLoopBudget());
}

} // namespace tarnwick
