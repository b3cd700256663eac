#include "player/Sound/Playback.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double pauseAfter = 10; // seconds without sound
// Seconds between two tries to open a device: twice as long after each, the shortest after a Play.
constexpr double shortestRetry = 5, longestRetry = 60;
constexpr double longestGap = 0.5; // seconds that are played silently at once

} // namespace

Playback::Playback(SoundMix& mix, SoundClock& clock, std::function<void(const std::string&)> tell)
    : mix_(mix), clock_(clock), tell_(std::move(tell)),
      silent_(static_cast<std::size_t>(2 * SoundOutput::period)) {}

void Playback::keep(bool isWanted, double host) {
    const bool wasWanted = std::exchange(wasWanted_, isWanted);
    const bool isAnew = isWanted && !wasWanted;
    if (isWanted)
        lastWanted_ = host;
    const bool isNeeded = host - lastWanted_ < pauseAfter;
    look(host);
    if (isAnew)
        retry_ = shortestRetry;
    if (isWanted && !output_ && host - lastTry_ >= retry_)
        open(host);
    if (std::exchange(isRunning_, isNeeded) != isNeeded) {
        clock_.restart();
        mix_.restart();
        if (output_)
            output_->setPaused(!isNeeded);
    }
    if (isRunning_ && !output_)
        playSilently(host);
}

// A lost device is replaced by the next one at once, if there is one.
void Playback::look(double host) {
    if (!output_ || !output_->isLost())
        return;
    output_.reset();
    open(host);
}

void Playback::open(double host) {
    clock_.restart();
    mix_.restart();
    lastTry_ = host;
    try {
        output_ = SoundOutput::open(
            [this](std::span<float> stereo) { mix_.fill(stereo, currentMediaTime()); });
        hasTold_ = false;
        retry_ = shortestRetry;
    } catch (const SoundError& error) {
        retry_ = std::min(2 * retry_, longestRetry);
        say(error.what() + std::string(" Playing goes on silently."));
    }
    setLatency();
}

void Playback::say(const std::string& sentence) {
    if (!std::exchange(hasTold_, true))
        tell_(sentence);
}

void Playback::setLatency() {
    clock_.setLatency((output_ ? SoundOutput::latency() : 0) + delay_);
}

void Playback::setDelay(double seconds) {
    if (std::exchange(delay_, seconds) != seconds)
        setLatency();
}

void Playback::playSilently(double host) {
    constexpr double length = static_cast<double>(SoundOutput::period) / SoundOutput::rate;
    if (host - silentUntil_ > longestGap) {
        silentUntil_ = host - length;
        clock_.restart();
    }
    while (silentUntil_ + length <= host) {
        silentUntil_ += length;
        mix_.fill(silent_, silentUntil_);
    }
}

} // namespace tarnwick::player
