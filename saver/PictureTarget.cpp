#include "saver/PictureTarget.h"

#include "TarnwickGPU/Device.h"
#include "TarnwickRender/TexturePicture.h"

namespace tarnwick {

PictureTarget::PictureTarget(gpu::Device& device, const PixelSize& size) : device_(&device) {
    resize(size);
}

void PictureTarget::resize(const PixelSize& size) {
    waitUntilDrawn();
    last_.reset();
    for (Slot& slot : slots_)
        slot.texture = device_->newTexture({.format = gpu::PixelFormat::bgra8Unorm,
                                            .width = size.width,
                                            .height = size.height,
                                            .usage = {.renderTarget = true}});
}

const gpu::Texture* PictureTarget::nextTexture() {
    slots_[next_].waitUntilDrawn();
    return slots_[next_].texture.get();
}

void PictureTarget::present(gpu::CommandBuffer commands) {
    commands.commit();
    slots_[next_].commands = std::move(commands);
    last_ = next_;
    next_ = (next_ + 1) % slots_.size();
}

void PictureTarget::Slot::waitUntilDrawn() {
    if (commands)
        commands->waitUntilCompleted();
    commands.reset();
}

void PictureTarget::waitUntilDrawn() {
    for (Slot& slot : slots_)
        slot.waitUntilDrawn();
}

Picture PictureTarget::lastPicture() {
    if (!last_)
        return {};
    slots_[*last_].waitUntilDrawn();
    return pictureOf(*slots_[*last_].texture);
}

} // namespace tarnwick
