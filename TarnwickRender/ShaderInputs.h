// The inputs of a frame of an episode that takes `Inputs`.
#pragma once

#include "TarnwickGPU/Resources.h"

#include <array>
#include <vector>

namespace tarnwick {

// All textures are borrowed; null reads as transparent black.
struct ShaderInputs {
    std::array<float, 4> audio{};                // levels: low, mid, high, all
    const gpu::Texture* spectrum = nullptr;      // spectrumBins by 1
    std::vector<const gpu::Texture*> channels{}; // at most four are used
    const gpu::Texture* previous = nullptr;      // the last finished frame

    // Silence and black.
    static const ShaderInputs& none();
};

} // namespace tarnwick
