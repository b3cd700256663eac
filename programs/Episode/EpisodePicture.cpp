#include "programs/Episode/EpisodePicture.h"

#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickRender/Channels/EpisodeInputs.h"
#include "TarnwickRender/Performing/TimelineStill.h"
#include "TarnwickRender/ProgramFrames.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeProgram.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwick {

PixelSize pixelSizeOf(const Arguments& arguments) {
    return sizeOf(arguments.textOf("--size")).value();
}

double stillTime(const Episode& episode) {
    return std::isfinite(episode.meta.still) ? episode.meta.still : EpisodeMeta().still;
}

std::uint32_t savedFrame(double time) {
    constexpr double greatest = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(time * 30, greatest));
}

namespace {

std::optional<Picture> drawn(const std::shared_ptr<const ShaderProgram>& program,
                             const EpisodeFrame& frame, gpu::Device& device, StillNews& news) {
    const auto [width, height] = frame.size;
    try {
        const bool isPerformed = frame.timeline.performance() != nullptr;
        auto inputs = isPerformed
                          ? PerformedSources::make(program, device, width, height, frame.performed)
                          : EpisodeInputs::make(program, device, width, height,
                                                {.channels = frame.channels,
                                                 .hearsOwnSound = frame.hears,
                                                 .soundFile = frame.audio});
        return timelineStill(program, device, width, height, frame.timeline, frame.time,
                             {.frame = frame.frame, .inputs = std::move(inputs), .news = &news});
    } catch (const InputError& error) {
        failure(error.what());
    }
}

} // namespace

Picture pictureOf(const std::shared_ptr<const ShaderProgram>& program, const EpisodeFrame& frame,
                  gpu::Device& device, StillNews& news, ProgressBar& bar) {
    checkSteps(*program, frame.time, "stills");
    bar.doing("Drawing " + frame.episode.path);
    news.warmed = [&](std::int64_t step, std::int64_t goal) {
        if (step < goal)
            bar.show(step, goal);
        else
            bar.doing("Drawing " + frame.episode.path);
    };
    std::optional<Picture> picture = drawn(program, frame, device, news);
    if (!picture)
        failure(ProgramFrames::absence(*program, device, frame.size.width, frame.size.height));
    return *std::move(picture);
}

Picture pictureOf(const EpisodeFrame& frame, gpu::Device& device) {
    ProgressBar bar("Step");
    return pictureOf(frame, device, bar);
}

Picture pictureOf(const EpisodeFrame& frame, gpu::Device& device, ProgressBar& bar) {
    const auto program = programOf(frame.episode, device, bar);
    StillNews news;
    Picture picture = pictureOf(program, frame, device, news, bar);
    bar.hide();
    if (news.hitLoopBudget)
        warnOfLoopBudget(frame.episode.path);
    return picture;
}

void warnOfLoopBudget(std::string_view path, std::string_view made) {
    tell("A loop of " + std::string(path) + " ran for too long and was stopped; the " +
         std::string(made) + " may be incomplete.");
}

} // namespace tarnwick
