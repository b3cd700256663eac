// The search for a length at which an episode loops, as the subcommands ask for it.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickRender/LoopFinder.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace tarnwick {

struct LoopSearch {
    double start = 0;      // seconds of the episode, at which the loop begins
    double around = 0;     // seconds, the length that is wanted
    double range = 0.5;    // seconds that the length may differ from that
    std::int64_t fps = 30; // frames a second
};

// Where a loop begins that is asked to begin at `start` and whose end is crossfaded into the
// `crossfade` seconds before: late enough that these do not lie before time 0.
inline double loopStart(double start, double crossfade) {
    return std::max(start, crossfade);
}

// Says on standard error that a loop begins later than was asked, where it does.
void sayLoopStart(double asked, double start);

// Each still has the values that the settings give at its time. How far the search is stands on the
// terminal; `path` is what to name the episode by. Throws CommandError where no length can be
// given.
FoundLoop findLoop(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                   const Settings& settings, const LoopSearch& search, std::string_view path);

// "6.03333333 seconds: 181 frames, whose ends differ by 0.52 of 255 values"
std::string loopText(const FoundLoop& found, std::int64_t fps);

} // namespace tarnwick
