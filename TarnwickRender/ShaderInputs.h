// What a frame gives an episode that takes `Inputs`, besides its uniforms and parameters.
#pragma once

#include "TarnwickGPU/Resources.h"

#include <array>
#include <vector>

namespace tarnwick {

// All textures are borrowed, and absent ones read as transparent black.
struct ShaderInputs {
    std::array<float, 4> audio{};                // levels
    const gpu::Texture* spectrum = nullptr;      // spectrumBins by 1
    std::vector<const gpu::Texture*> channels{}; // the first four are used
    const gpu::Texture* previous = nullptr;      // the last finished frame

    // Silence and black.
    static const ShaderInputs& none();
};

} // namespace tarnwick
