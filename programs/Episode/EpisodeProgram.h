// An episode compiled for a subcommand, and the device that it is for.
#pragma once

#include "TarnwickRender/EpisodeCheck.h"
#include "TarnwickRender/ShaderProgram.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Terminal/ProgressBar.h"

#include <memory>
#include <string_view>

namespace tarnwick {

// The device to draw with. Throws CommandError where there is none.
std::shared_ptr<gpu::Device> drawingDevice();

// Throws CommandError where the episode does not compile, after it printed the compiler's findings.
std::shared_ptr<const ShaderProgram> programOf(const Episode& episode, gpu::Device& device);
// The same, and says on `bar` that it compiles, among other work that it shows.
std::shared_ptr<const ShaderProgram> programOf(const Episode& episode, gpu::Device& device,
                                               ProgressBar& bar);

// What the compiler finds, as `check` says it. Without a device its pipelines are not made.
EpisodeFindings checkedEpisode(const Episode& episode, gpu::Device* device,
                               EpisodeWarnings warnings = EpisodeWarnings::usual);

// Throws CommandError where the episode does not compile, as programOf() does; works without a
// device.
void checkCompiles(const Episode& episode);

// Throws CommandError where a simulation has no step for that time, in seconds; `what` of it is
// wanted: "stills".
void checkSteps(const ShaderProgram& program, double time, std::string_view what);

} // namespace tarnwick
