// Sound that comes in: a microphone, any other input, or what the desktop plays.
#pragma once

#include "TarnwickPlatform/Sound/SoundError.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tarnwick {

// One thread at a time.
class SoundCapture {
  public:
    static constexpr int rate = 48000; // samples in a second; the system converts

    // The names of the devices. Blocks. Empty without any.
    static std::vector<std::string> devices();

    // Takes the next samples, of one channel. Called on a thread of the device.
    using Hear = std::function<void(std::span<const float> mono)>;

    // Opens the device of that name; empty: the default. Blocks. Throws SoundError.
    static std::unique_ptr<SoundCapture> open(const std::string& name, Hear hear);
    // What the default output plays: the monitor source of a sound server. Throws SoundError, also
    // if the system has none.
    static std::unique_ptr<SoundCapture> openDesktop(Hear hear);
    ~SoundCapture();

    bool isLost() const;

  private:
    struct Device;

    explicit SoundCapture(std::unique_ptr<Device> device);

    std::unique_ptr<Device> device_;
};

} // namespace tarnwick
