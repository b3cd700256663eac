// One frame of an episode, drawn for a command.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/Timeline.h"
#include "TarnwickRender/Channels/PerformedSources.h"
#include "TarnwickRender/StillRenderer.h"
#include "programs/Terminal/ProgressBar.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The value of --size, or its default.
PixelSize pixelSizeOf(const Arguments& arguments);

// The time of the episode's still, in seconds.
double stillTime(const Episode& episode);

// The frame number at `time` in a saver with 30 frames per second.
std::uint32_t savedFrame(double time);

struct EpisodeFrame {
    Episode episode;
    PixelSize size;
    double time = 0;         // seconds of the timeline, at least 0
    std::uint32_t frame = 0; // a performance has its own
    Timeline timeline{};
    // Its own sound up to that time, otherwise silence.
    bool hears = false;
    ChannelSources channels{};
    std::filesystem::path audio{};          // a sound file that it hears; empty: none
    std::vector<PerformedSource> performed; // of a performance, which has no other inputs
};

// Compiles and draws it, with progress on standard error. Throws CommandError; the compiler's
// findings are printed before.
Picture pictureOf(const EpisodeFrame& frame, gpu::Device& device);
// The same with a bar that shows other work too.
Picture pictureOf(const EpisodeFrame& frame, gpu::Device& device, ProgressBar& bar);

// Draws it with `program`; frame.episode is ignored. Throws CommandError.
Picture pictureOf(const std::shared_ptr<const ShaderProgram>& program, const EpisodeFrame& frame,
                  gpu::Device& device, StillNews& news, ProgressBar& bar);

// Prints on standard error that a loop of the episode was stopped, so that `made` may be
// incomplete.
void warnOfLoopBudget(std::string_view path, std::string_view made = "picture");

constexpr std::array<Option, 1> hearOptions{{
    {.name = "--hear",
     .help = "in stills an episode with Inputs hears its own sound; without it, silence"},
}};

} // namespace tarnwick
