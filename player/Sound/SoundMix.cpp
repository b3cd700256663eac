#include "player/Sound/SoundMix.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr float volumeStep = 1.0f / (0.01f * soundRate); // of the gain in a frame: 10 ms for all
constexpr float fadeOutStep = 0.99f; // per frame, where frames are missing: 1/10 in 5 ms

float moved(float gain, float goal) {
    return gain + std::clamp(goal - gain, -volumeStep, volumeStep);
}

} // namespace

void SoundMix::setVolume(const SoundVolume& volume) {
    const float all = volume.isMuted ? 0 : std::clamp(volume.all, 0.0f, 1.0f);
    ownVolume_ = all;
    fileVolume_ = volume.hasFile ? all : 0;
}

// The last frame goes on and fades.
void SoundMix::fadeOut(std::int64_t from) {
    for (std::size_t at = static_cast<std::size_t>(from); at < frames_.size(); ++at) {
        last_ = mixed(SoundFrame{}, last_, fadeOutStep);
        frames_[at] = last_;
    }
}

void SoundMix::countFrames(std::int64_t wanted, std::int64_t there, double host) {
    missing_ += wanted - there;
    if (isNew_.exchange(false)) {
        taken_ = late_ = 0;
        longestWait_ = 0;
        isBegun_ = false;
        lastCall_ = host;
    }
    isBegun_ = isBegun_ || there > 0;
    taken_ += wanted;
    if (isBegun_)
        late_ += wanted - there;
    const double wait = host - std::exchange(lastCall_, host);
    if (taken_ > soundRate) // a server may take longer to begin
        longestWait_ = std::max(longestWait_.load(), wait);
}

void SoundMix::fill(std::span<float> stereo, double host) {
    const auto count = static_cast<std::int64_t>(stereo.size() / 2);
    frames_.resize(static_cast<std::size_t>(count));
    const std::int64_t there = ring_.take(frames_);
    clock_.taken(ring_.taken(), count, host);
    if (there > 0)
        last_ = frames_[static_cast<std::size_t>(there - 1)];
    countFrames(count, there, host);
    fadeOut(there);
    const float own = ownVolume_, file = fileVolume_;
    for (std::size_t at = 0; at < frames_.size(); ++at) {
        own_ = moved(own_, own);
        file_ = moved(file_, file);
        for (std::size_t side = 0; side < 2; ++side)
            stereo[2 * at + side] = std::clamp(
                frames_[at].own[side] * own_ + frames_[at].file[side] * file_, -1.0f, 1.0f);
    }
}

} // namespace tarnwick::player
