#include "TarnwickRender/Targets/PictureTarget.h"

#include "TarnwickGPU/Device.h"
#include "TarnwickRender/TexturePicture.h"

namespace tarnwick {
namespace {

constexpr double always = 1e9; // seconds

} // namespace

PictureTarget::PictureTarget(gpu::Device& device, const PixelSize& size)
    : FrameTarget(count), device_(&device) {
    resize(size);
}

void PictureTarget::resize(const PixelSize& size) {
    frames.waitUntilDrawn(always);
    last_.reset();
    for (auto& texture : textures_)
        texture = device_->newTexture({.format = gpu::PixelFormat::bgra8Unorm,
                                       .width = size.width,
                                       .height = size.height,
                                       .usage = {.renderTarget = true}});
}

const gpu::Texture* PictureTarget::nextTexture() {
    frames.waitForRoom(always);
    return textures_[next_].get();
}

void PictureTarget::present(gpu::CommandBuffer commands) {
    commands.commit();
    frames.add(std::move(commands));
    last_ = next_;
    next_ = (next_ + 1) % count;
}

Picture PictureTarget::lastPicture() {
    if (!last_)
        return {};
    frames.waitUntilDrawn(always);
    return pictureOf(*textures_[*last_]);
}

} // namespace tarnwick
