#include "player/Sound/CapturedSound.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {

void CapturedSound::hear(std::span<const float> mono) {
    const std::lock_guard lock(mutex_);
    for (const float sample : mono) {
        samples_[next_] = std::isfinite(sample) ? sample : 0;
        next_ = (next_ + 1) % samples_.size();
    }
    heard_ += std::ssize(mono);
}

std::vector<float> CapturedSound::samples() const {
    const std::lock_guard lock(mutex_);
    std::vector<float> ordered = samples_;
    std::ranges::rotate(ordered, ordered.begin() + static_cast<std::ptrdiff_t>(next_));
    return ordered;
}

std::int64_t CapturedSound::heard() const {
    const std::lock_guard lock(mutex_);
    return heard_;
}

} // namespace tarnwick::player
