#include "TarnwickRender/Channels/EpisodeChannel.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

EpisodeChannel::EpisodeChannel(const std::shared_ptr<const ShaderProgram>& program,
                               const Timeline& timeline, std::shared_ptr<FrameInputs> inputs,
                               gpu::Device& device, std::int64_t width, std::int64_t height)
    : device_(device.info().name), queue_(device.newCommandQueue()),
      frames_(PerformedFrames::make(program, device, width, height, timeline, std::move(inputs))) {
    if (frames_ && queue_)
        target_ = device.newTexture({.format = ShaderProgram::pixelFormat,
                                     .width = static_cast<std::uint32_t>(width),
                                     .height = static_cast<std::uint32_t>(height),
                                     .usage = {.shaderRead = true, .renderTarget = true},
                                     .storage = gpu::StorageMode::private_});
    if (!target_)
        throw InputError(ProgramFrames::absence(*program, device, width, height));
}

bool EpisodeChannel::prepare(double time) {
    return time_ == time || !frames_->prepare(std::max(time, 0.0), *queue_);
}

const gpu::Texture* EpisodeChannel::at(double time) {
    if (std::exchange(time_, time) != time)
        draw(std::max(time, 0.0));
    return target_.get();
}

void EpisodeChannel::draw(double time) {
    while (frames_->prepare(time, *queue_))
        continue;
    auto commands = queue_->commandBuffer();
    const gpu::RenderPassDescriptor pass{
        .color = {.texture = target_.get(), .load = gpu::LoadAction::clear}};
    const bool isEncoded = commands && frames_->encode(*commands, {.descriptor = pass});
    if (isEncoded) {
        commands->commit();
        commands->waitUntilCompleted();
    }
    if (!isEncoded || commands->status() != gpu::CommandBufferStatus::completed)
        throw InputError("The episode of a channel could not be drawn with " + device_ + ".");
}

} // namespace tarnwick
