// Keeps the sound device open while it is needed, and goes on silently without one.
#pragma once

#include "TarnwickPlatform/Sound/SoundOutput.h"
#include "player/Sound/SoundClock.h"
#include "player/Sound/SoundMix.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick::player {

// One thread.
class Playback {
  public:
    // `tell` gets a sentence when the device cannot be opened or is lost: once until one is open
    // again. It is tried again at intervals.
    Playback(SoundMix& mix, SoundClock& clock, std::function<void(const std::string&)> tell);

    // Call it every few milliseconds while sound is wanted. Blocks while a device is opened. A
    // device that is not wanted for some seconds is paused, and not opened before it is wanted.
    void keep(bool isWanted, double host);
    // Whether the ring is emptied: by a device, or silently.
    bool isRunning() const { return isRunning_; }

    // Seconds by which the user hears the sound later than the device says.
    void setDelay(double seconds);

  private:
    void open(double host);
    void look(double host);
    void say(const std::string& sentence);
    void playSilently(double host);
    void setLatency();

    SoundMix& mix_;
    SoundClock& clock_;
    std::function<void(const std::string&)> tell_;
    std::unique_ptr<SoundOutput> output_; // null: silently
    std::vector<float> silent_;           // frames without a device
    double delay_ = 0;
    double lastWanted_ = -1e9;  // host seconds
    double lastTry_ = -1e9;     // host seconds, to open a device
    double retry_ = 0;          // seconds until the next try
    double silentUntil_ = -1e9; // host seconds up to which frames were taken silently
    bool wasWanted_ = false;
    bool isRunning_ = false;
    bool hasTold_ = false;
};

} // namespace tarnwick::player
