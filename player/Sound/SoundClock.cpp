#include "player/Sound/SoundClock.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

// Seconds over which the moments are averaged. A device fills its buffers at first, in blocks that
// follow each other at once; these are soon forgotten.
constexpr double shortestMean = 0.05, longestMean = 2;
constexpr double meanOfAge = 0.25; // of the seconds since the start

constexpr double farOff = 0.1; // seconds; the device stalled or the machine slept
constexpr int jumpsInARow = 3;

} // namespace

void SoundClock::taken(std::int64_t end, std::int64_t count, double host) {
    const double length = static_cast<double>(count) / soundRate;
    const double measured = host - static_cast<double>(end - count) / soundRate;
    const double error = measured - offset_;
    jumps_ = std::abs(error) > farOff ? jumps_ + 1 : 0;
    if (isNew_.exchange(false) || jumps_ >= jumpsInARow) {
        offset_ = measured;
        age_ = 0;
        jumps_ = 0;
        return;
    }
    age_ += length;
    const double mean = std::clamp(age_ * meanOfAge, shortestMean, longestMean);
    offset_ = offset_ + error * std::min(length / mean, 1.0);
}

double SoundClock::hostOf(std::int64_t number) const {
    return offset_ + static_cast<double>(number) / soundRate + latency_;
}

std::int64_t SoundClock::numberAt(double host) const {
    return static_cast<std::int64_t>(std::floor((host - latency_ - offset_) * soundRate));
}

} // namespace tarnwick::player
