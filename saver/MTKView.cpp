#include "saver/MTKView.h"

namespace tarnwick {

void MTKView::setTarget(std::unique_ptr<FrameTarget> target) {
    target_ = std::move(target);
    target_->resize(frame_.pixels());
}

void MTKView::superviewDidResize(const Rectangle& bounds) {
    const PixelSize before = frame_.pixels();
    if (autoresizingMask.widthSizable)
        frame_.width = bounds.width;
    if (autoresizingMask.heightSizable)
        frame_.height = bounds.height;
    const PixelSize size = frame_.pixels();
    if (size == before)
        return;
    if (delegate != nullptr)
        delegate->mtkViewDrawableSizeWillChange(*this, size);
    if (target_)
        target_->resize(size);
}

void MTKView::draw() {
    if (delegate != nullptr)
        delegate->drawInMTKView(*this);
    drawable_ = nullptr;
}

const gpu::Texture* MTKView::currentDrawable() {
    if (drawable_ == nullptr && target_)
        drawable_ = target_->nextTexture();
    return drawable_;
}

std::optional<gpu::RenderPassDescriptor> MTKView::currentRenderPassDescriptor() {
    const gpu::Texture* drawable = currentDrawable();
    if (drawable == nullptr)
        return std::nullopt;
    gpu::RenderPassDescriptor descriptor;
    descriptor.color.texture = drawable;
    descriptor.color.load = gpu::LoadAction::clear;
    return descriptor;
}

void MTKView::present(gpu::CommandBuffer commands) {
    target_->present(std::move(commands));
    drawable_ = nullptr;
}

} // namespace tarnwick
