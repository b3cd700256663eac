// The sound device that is heard.
#pragma once

#include "TarnwickPlatform/Sound/SoundError.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace tarnwick {

// The default device of the system, which may change while it is open. One thread at a time.
class SoundOutput {
  public:
    static constexpr int rate = 48000;  // frames in a second; the system converts
    static constexpr int period = 1024; // frames in a call of Fill

    // Writes the next `period` frames: interleaved stereo, left first, each in [-1, 1]. Called on a
    // thread of the device; it must not block.
    using Fill = std::function<void(std::span<float> stereo)>;

    // Asks a sound server for a buffer of serverBuffer, unless the user's PULSE_LATENCY_MSEC has
    // another length. SDL asks for the length of one call, so that the server plays silence if the
    // system runs the device's thread, or the server, a few milliseconds late. It changes the
    // process's environment: call it before other threads start.
    static void askForServerBuffer();
    static constexpr double serverBuffer = 0.1; // seconds

    // Starts to call `fill`. Blocks while the device is opened. Throws SoundError.
    static std::unique_ptr<SoundOutput> open(Fill fill);
    // Waits for a call of Fill under way.
    ~SoundOutput();

    // A paused device calls nothing.
    void setPaused(bool isPaused);
    // Whether the device is gone; it calls nothing any more.
    bool isLost() const;
    // Seconds from the call for a frame to the moment it is heard, as estimated.
    static double latency();

  private:
    struct Device;

    explicit SoundOutput(std::unique_ptr<Device> device);

    std::unique_ptr<Device> device_;
};

} // namespace tarnwick
