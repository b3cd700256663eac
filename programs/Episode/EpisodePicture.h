// One frame of an episode, drawn for a subcommand.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickRender/StillRenderer.h"
#include "programs/CommandLine/Arguments.h"
#include "programs/Terminal/ProgressBar.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

// What --size WIDTHxHEIGHT says, or `otherwise`. Throws CommandError.
PixelSize pixelSizeOf(const Arguments& arguments, PixelSize otherwise);

// The time of the episode's still, in seconds.
double stillTime(const Episode& episode);

// The number that a saver of 30 frames a second would have come to.
std::uint32_t savedFrame(double time);

struct EpisodeFrame {
    Episode episode;
    PixelSize size;
    double time = 0; // seconds, from 0 on
    std::uint32_t frame = 0;
    Settings settings{};
    bool hears = false; // plays the episode's own sound to it up to that time; else silence
};

// Compiles and draws it; how far that is stands on standard error. Throws CommandError; what the
// compiler finds has been printed then.
Picture pictureOf(const EpisodeFrame& frame, gpu::Device& device);
// The same on a bar that shows other work too.
Picture pictureOf(const EpisodeFrame& frame, gpu::Device& device, ProgressBar& bar);

// Draws it with its program. Throws CommandError.
Picture pictureOf(const std::shared_ptr<const ShaderProgram>& program, const EpisodeFrame& frame,
                  gpu::Device& device, StillNews& news, ProgressBar& bar);

// Says on standard error that a loop of the episode was ended; `made` is what may lack something
// now.
void warnOfLoopBudget(std::string_view path, std::string_view made = "picture");

constexpr Option hearOption{"--hear", "",
                            "an episode with Inputs hears its own sound; default: silence"};

} // namespace tarnwick
