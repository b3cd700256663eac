// The errors and warnings about an episode, found without drawing it.
#pragma once

#include "TarnwickCore/Diagnostics.h"
#include "TarnwickRender/Program/CompiledEpisode.h"

#include <string>
#include <vector>

namespace tarnwick {

struct EpisodeFindings {
    bool compiles = false;
    bool hasRoom = true; // the device can hold the state that the episode keeps between frames
    std::vector<Diagnostic>
        diagnostics; // the compiler's errors, or the warnings of an episode that compiles
    std::string raw; // the compiler's whole text, or one sentence if the episode does not compile
                     // for another reason or has no room
};

// Compiles the episode and makes its pipelines on `device`, as ShaderProgram::compile does. If
// `device` is null, errors of the device are not found. Blocks; any thread.
EpisodeFindings checkEpisode(const Episode& episode, gpu::Device* device,
                             EpisodeWarnings warnings = EpisodeWarnings::usual);

} // namespace tarnwick
