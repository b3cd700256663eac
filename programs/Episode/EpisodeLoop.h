// The search for a length at which an episode loops.
#pragma once

#include "TarnwickRender/Channels/ChannelSources.h"
#include "TarnwickRender/LoopFinder.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace tarnwick {

struct LoopSearch {
    double start = 0;      // seconds of the episode: start of the loop
    double around = 0;     // seconds: desired length
    double range = 0.5;    // seconds: maximum difference from it
    std::int64_t fps = 30; // frames per second
};

// The start of a loop whose end is crossfaded into the `crossfade` seconds before the start: at
// least `crossfade`, so that these seconds are not before time 0.
inline double loopStart(double start, double crossfade) {
    return std::max(start, crossfade);
}

// Prints a line on standard error if a loop begins later than requested.
void sayLoopStart(double asked, double start);

// Each still shows the timeline at its time, with the channels of that time. Prints progress on
// standard error; `path` is the name of the episode in messages. Throws CommandError if there is no
// length.
FoundLoop findLoop(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                   const Timeline& timeline, const LoopSearch& search, std::string_view path,
                   const ChannelSources& channels = {});

// "6.03333333 seconds: 181 frames, whose ends differ by 0.52 of 255 values"
std::string loopText(const FoundLoop& found, std::int64_t fps);

} // namespace tarnwick
