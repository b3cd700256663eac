#include "saver/WindowTarget.h"

namespace tarnwick {

void WindowTarget::resize(const PixelSize& size) {
    drawable_.reset();
    layer_->resize(size.width, size.height);
}

const gpu::Texture* WindowTarget::nextTexture() {
    drawable_.reset();
    drawable_ = layer_->nextDrawable();
    return drawable_ ? &drawable_->texture() : nullptr;
}

void WindowTarget::present(gpu::CommandBuffer commands) {
    if (drawable_)
        commands.present(*drawable_);
    commands.commit();
    drawable_.reset();
}

} // namespace tarnwick
