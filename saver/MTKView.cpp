#include "saver/MTKView.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

void MTKView::setTarget(std::unique_ptr<FrameTarget> target) {
    target_ = std::move(target);
    target_->frames.setLongestFrame(longestFrame);
    target_->resize(frame_.pixels());
}

PixelSize MTKView::drawableSize() const {
    const PixelSize whole = frame_.pixels();
    auto scaled = [this](std::uint32_t side) {
        return std::max(1u, static_cast<std::uint32_t>(std::lround(side * scale_)));
    };
    return {scaled(whole.width), scaled(whole.height)};
}

void MTKView::setDrawableScale(double scale) {
    const PixelSize before = drawableSize();
    scale_ = scale;
    if (delegate != nullptr && drawableSize() != before)
        delegate->mtkViewDrawableSizeWillChange(*this, drawableSize());
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
        delegate->mtkViewDrawableSizeWillChange(*this, drawableSize());
    if (target_)
        target_->resize(size);
}

void MTKView::draw() {
    if (delegate != nullptr)
        delegate->drawInMTKView(*this);
    drawable_ = smaller_ = nullptr;
}

const gpu::Texture* MTKView::currentDrawable() {
    if (drawable_ == nullptr && target_) {
        drawable_ = target_->nextTexture();
        if (drawable_ != nullptr && scale_ < 1 && !enlarger_)
            enlarger_ = std::make_unique<Enlarger>(*device_);
        smaller_ =
            drawable_ != nullptr && scale_ < 1 ? enlarger_->smaller(drawableSize()) : nullptr;
    }
    return smaller_ != nullptr ? smaller_ : drawable_;
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
    if (smaller_ != nullptr)
        enlarger_->enlarge(commands, *drawable_);
    target_->present(std::move(commands));
    drawable_ = smaller_ = nullptr;
}

} // namespace tarnwick
