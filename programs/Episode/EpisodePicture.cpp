#include "programs/Episode/EpisodePicture.h"

#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickRender/Performing/PerformedStill.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/SoundTap.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
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

Picture performed(const std::shared_ptr<const ShaderProgram>& program, const EpisodeFrame& frame,
                  gpu::Device& device, StillNews& news) {
    const auto [width, height] = frame.size;
    std::optional<Picture> picture =
        performedStill(program, device, width, height, frame.performance, frame.time, &news);
    if (!picture)
        failure(ProgramFrames::absence(*program, device, width, height));
    return *std::move(picture);
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
    const auto [width, height] = frame.size;
    if (frame.performance)
        return performed(program, frame, device, news);
    const auto tap =
        frame.hears && program->usesInputs() ? SoundTap::make(program, device) : nullptr;
    const ShaderInputs inputs =
        tap ? tap->playedInputs(frame.time, frame.settings.values) : ShaderInputs::none();
    std::optional<Picture> picture = StillRenderer::render(
        program, device, width, height, static_cast<float>(frame.time), frame.frame,
        frame.settings.valuesAt(frame.time), &news, valuesOverTime(frame.settings), inputs);
    if (!picture)
        failure(ProgramFrames::absence(*program, device, width, height));
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
    std::fprintf(
        stderr,
        "tarnwick: A loop of %s ran for too long and was stopped; the %s may be incomplete.\n",
        std::string(path).c_str(), std::string(made).c_str());
}

} // namespace tarnwick
