// The speed of rendering and analysing the sound of an episode.
#pragma once

#include "TarnwickGPU/Device.h"

namespace tarnwick::bench {

// Medians for a sound of two oscillators.
struct SoundSpeed {
    static constexpr double duration = 60; // seconds of rendered sound
    double render = 0;                     // milliseconds of rendering them
    double inputs = 0;                     // milliseconds of the sound inputs of one frame
    double analyse = 0;                    // milliseconds of this on the CPU
    double realTime() const { return duration * 1000 / render; }
};

// Throws ShaderError if the device cannot render sound, DeviceError if rendering does not complete.
SoundSpeed soundSpeed(gpu::Device& device);

} // namespace tarnwick::bench
