#include "TarnwickRender/Sound/SoundListener.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr double firstElapsed = 1.0 / 60; // seconds

} // namespace

void SoundListener::listen(double time, std::span<const float> mono) {
    if (lastTime_ && time < *lastTime_)
        analyzer_.reset();
    analyzer_.analyse(mono, lastTime_ ? std::max(time - *lastTime_, 0.0) : firstElapsed);
    lastTime_ = time;
}

void SoundListener::reset() {
    analyzer_.reset();
    lastTime_.reset();
}

} // namespace tarnwick
