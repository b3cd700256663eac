#include "TarnwickRender/FeedbackFrames.h"

#include "TarnwickBase/PixelSize.h"

#include <algorithm>

namespace tarnwick {
namespace {

void copyCommonPart(const gpu::Texture& source, const gpu::Texture& target,
                    gpu::CommandBuffer& commands) {
    auto encoder = commands.blitCommandEncoder();
    if (!encoder)
        return;
    encoder->copy(source,
                  {.width = std::min(source.width(), target.width()),
                   .height = std::min(source.height(), target.height())},
                  target, 0, 0);
    encoder->endEncoding();
}

} // namespace

std::unique_ptr<FeedbackFrames> FeedbackFrames::make(gpu::Device& device, std::int64_t width,
                                                     std::int64_t height, gpu::PixelFormat format) {
    const auto size = PixelSize::of(width, height);
    if (!size)
        return nullptr;
    auto made = std::make_unique<FeedbackFrames>();
    for (auto& texture : made->textures_)
        texture = device.newTexture({.format = format,
                                     .width = size->width,
                                     .height = size->height,
                                     .usage = {.shaderRead = true, .renderTarget = true},
                                     .storage = gpu::StorageMode::private_});
    return made->textures_[0] && made->textures_[1] ? std::move(made) : nullptr;
}

void FeedbackFrames::advance() {
    index_ = 1 - index_;
    hasPrevious_ = true;
}

void FeedbackFrames::goBack(bool hasPrevious) {
    index_ = 1 - index_;
    hasPrevious_ = hasPrevious;
}

void FeedbackFrames::copy(const gpu::Texture& target, gpu::CommandBuffer& commands) const {
    copyCommonPart(current(), target, commands);
}

void FeedbackFrames::copyPrevious(const gpu::Texture& target, gpu::CommandBuffer& commands) const {
    if (const gpu::Texture* frame = previous())
        copyCommonPart(*frame, target, commands);
}

} // namespace tarnwick
