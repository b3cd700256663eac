// An episode compiled to SPIR-V, before any pipeline is made.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

enum class EpisodeWarnings : std::uint8_t {
    usual,
    more // also those of msl::CompileOptions::moreWarningsIn, for the episode's own lines
};

struct CompiledEpisode {
    AssembledShader shader;
    std::unique_ptr<gpu::Library> library; // its warnings() are the compiler's

    // For `device`; null: for any device. Blocks. Throws ShaderError.
    static CompiledEpisode make(const Episode& episode, gpu::Device* device,
                                EpisodeWarnings warnings = EpisodeWarnings::usual);
};

} // namespace tarnwick
