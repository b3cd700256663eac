#include "saver/FramesInFlight.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

void FramesInFlight::add(gpu::CommandBuffer commands) {
    frames_.push_back({std::move(commands), currentMediaTime()});
}

bool FramesInFlight::waitForRoom(double seconds) {
    return waitForFewer(isFirstDone_ ? most_ : 1, seconds);
}

bool FramesInFlight::waitUntilDrawn(double seconds) {
    return waitForFewer(1, seconds);
}

bool FramesInFlight::waitForFewer(std::size_t count, double seconds) {
    const double end = currentMediaTime() + seconds;
    while (frames_.size() >= count) {
        const double left = std::max(end - currentMediaTime(), 0.0);
        if (!frames_.front().commands.waitUntilCompleted(left))
            return false;
        takeOutOldest();
    }
    return true;
}

void FramesInFlight::takeOutOldest() {
    const double now = currentMediaTime();
    const Frame& oldest = frames_.front();
    times_.add(now - oldest.begin, oldest.commands.hitLoopBudget());
    frames_.erase(frames_.begin());
    if (!frames_.empty())
        frames_.front().begin = now;
    isFirstDone_ = true;
}

bool FramesInFlight::takeTooLong() {
    waitForFewer(1, 0);
    if (frames_.empty())
        return times_.areTooLong();
    const Frame& oldest = frames_.front();
    return times_.areTooLong(currentMediaTime() - oldest.begin, oldest.commands.hitLoopBudget());
}

} // namespace tarnwick
