// The search for a length at which an episode loops, as the subcommands ask for it.
#pragma once

#include "TarnwickRender/LoopFinder.h"

#include <string_view>

namespace tarnwick {

struct LoopSearch {
    double start = 0;      // seconds of the episode, at which the loop begins
    double around = 0;     // seconds, the length that is wanted
    double range = 0.5;    // seconds that the length may differ from that
    std::int64_t fps = 30; // frames a second
};

// How far the search is stands on the terminal; `path` is what to name the episode by. Throws
// CommandError where no length can be given.
FoundLoop findLoop(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                   const ParamValues& values, const LoopSearch& search, std::string_view path);

} // namespace tarnwick
