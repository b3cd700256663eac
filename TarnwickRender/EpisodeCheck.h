// What stands against playing an episode, found without drawing it.
#pragma once

#include "TarnwickCore/Diagnostics.h"
#include "TarnwickRender/Program/CompiledEpisode.h"

#include <string>
#include <vector>

namespace tarnwick {

struct EpisodeFindings {
    bool compiles = false;
    bool hasRoom = true; // on the device, for what an episode that compiles keeps between frames
    std::vector<Diagnostic> diagnostics; // the compiler's: errors, or the warnings of a good one
    std::string raw; // the compiler's whole text, or the sentence that says why it does not compile
                     // or has no room
};

// Goes the way of ShaderProgram::compile: compiles the episode and makes its pipelines on `device`.
// Where that is null, what a device would refuse is not found. Blocks; any thread.
EpisodeFindings checkEpisode(const Episode& episode, gpu::Device* device,
                             EpisodeWarnings warnings = EpisodeWarnings::usual);

} // namespace tarnwick
