// How fast an episode's sound is evaluated and heard.
#pragma once

#include "TarnwickGPU/Device.h"

namespace tarnwick::bench {

// Medians, of a sound of two oscillators.
struct SoundSpeed {
    static constexpr double duration = 60; // seconds of sound that are rendered
    double render = 0;                     // milliseconds for those
    double inputs = 0;                     // milliseconds for what one frame hears
    double analyse = 0;                    // milliseconds of that on the processor alone
    double realTime() const { return duration * 1000 / render; }
};

// Throws ShaderError where the device does not take the sound, DeviceError where it fails.
SoundSpeed soundSpeed(gpu::Device& device);

} // namespace tarnwick::bench
