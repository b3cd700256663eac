#include "benchmarks/window/EventGaps.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int interval = 1; // milliseconds

} // namespace

EventGaps::EventGaps() {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, &EventGaps::tick);
    restart();
}

void EventGaps::restart() {
    last_ = currentMediaTime();
    longest_ = 0;
    timer_.start();
}

void EventGaps::tick() {
    const double now = currentMediaTime();
    longest_ = std::max(longest_, now - last_ - interval / 1000.0);
    last_ = now;
}

} // namespace tarnwick::player
