#include "TarnwickRender/Performing/TimelineStill.h"

#include "TarnwickBase/PixelSize.h"
#include "TarnwickRender/Performing/PerformedFrames.h"
#include "TarnwickRender/TexturePicture.h"

namespace tarnwick {
namespace {

using Program = std::shared_ptr<const ShaderProgram>;

std::optional<Picture> plainStill(const Program& program, gpu::Device& device, std::int64_t width,
                                  std::int64_t height, const Settings& settings, double time,
                                  const TimelineStillDetails& details) {
    ShaderInputs inputs;
    if (details.inputs) {
        inputs = details.inputs->playedInputs(time, settings.values);
        inputs.channels = details.inputs->channels(time);
    }
    const auto stills = Stills::make(program, device, width, height, valuesOverTime(settings));
    Picture picture;
    if (!stills || !stills->render(static_cast<float>(time), details.frame, settings.valuesAt(time),
                                   picture, details.news, inputs))
        return std::nullopt;
    return picture;
}

std::optional<Picture> performedStill(const Program& program, gpu::Device& device,
                                      std::int64_t width, std::int64_t height,
                                      const Timeline& timeline, double time,
                                      const TimelineStillDetails& details) {
    StillNews* const news = details.news;
    const auto size = PixelSize::of(width, height);
    const auto queue = size ? device.newCommandQueue() : nullptr;
    const auto target =
        queue ? device.newTexture({.format = ShaderProgram::pixelFormat,
                                   .width = size->width,
                                   .height = size->height,
                                   .usage = {.shaderRead = true, .renderTarget = true},
                                   .storage = gpu::StorageMode::shared})
              : nullptr;
    const auto frames =
        target ? PerformedFrames::make(program, device, width, height, timeline, details.inputs)
               : nullptr;
    if (!frames)
        return std::nullopt;
    while (const auto progress = frames->prepare(time, *queue))
        if (news != nullptr && news->warmed)
            news->warmed(progress->done, progress->total);
    auto commands = queue->commandBuffer();
    const gpu::RenderPassDescriptor pass{
        .color = {.texture = target.get(), .load = gpu::LoadAction::clear}};
    if (!commands || !frames->encode(*commands, {.descriptor = pass}))
        return std::nullopt;
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        return std::nullopt;
    if (news != nullptr)
        news->hitLoopBudget = commands->hitLoopBudget() || frames->hitLoopBudget();
    return pictureOf(*target);
}

} // namespace

std::optional<Picture> timelineStill(const Program& program, gpu::Device& device,
                                     std::int64_t width, std::int64_t height,
                                     const Timeline& timeline, double time,
                                     const TimelineStillDetails& details) {
    return timeline.performance()
               ? performedStill(program, device, width, height, timeline, time, details)
               : plainStill(program, device, width, height, timeline.settings(), time, details);
}

} // namespace tarnwick
