// The compilation of an episode for a command, and the device.
#pragma once

#include "TarnwickRender/EpisodeCheck.h"
#include "TarnwickRender/ShaderProgram.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Terminal/ProgressBar.h"

#include <memory>
#include <string_view>

namespace tarnwick {

// The device to draw with. Throws CommandError without a device.
std::shared_ptr<gpu::Device> drawingDevice();

// Throws CommandError if the episode does not compile, like checkCompiles().
std::shared_ptr<const ShaderProgram> programOf(const Episode& episode, gpu::Device& device);
// The same with a bar that shows other work too.
std::shared_ptr<const ShaderProgram> programOf(const Episode& episode, gpu::Device& device,
                                               ProgressBar& bar);

// The compiler's findings, as `check` prints them. Without a device no pipelines are made.
EpisodeFindings checkedEpisode(const Episode& episode, gpu::Device* device,
                               EpisodeWarnings warnings = EpisodeWarnings::usual);

// Throws CommandError if the episode does not compile, after it printed the compiler's findings.
// Works without a device.
void checkCompiles(const Episode& episode);

// Throws CommandError if a simulation has no step for `time` (seconds). `what` is the noun for the
// message: "stills".
void checkSteps(const ShaderProgram& program, double time, std::string_view what);

} // namespace tarnwick
