#include "TarnwickRender/Performing/PerformedStill.h"

#include "TarnwickBase/PixelSize.h"
#include "TarnwickRender/TexturePicture.h"

#include <utility>

namespace tarnwick {

std::optional<Picture> performedStill(const std::shared_ptr<const ShaderProgram>& program,
                                      gpu::Device& device, std::int64_t width, std::int64_t height,
                                      std::shared_ptr<const Performance> performance,
                                      double seconds, StillNews* news,
                                      std::shared_ptr<FrameInputs> inputs) {
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
        target ? PerformedFrames::make(program, device, width, height, std::move(performance),
                                       std::move(inputs))
               : nullptr;
    if (!frames)
        return std::nullopt;
    while (const auto progress = frames->prepare(seconds, *queue))
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

} // namespace tarnwick
