#include "saver/Enlarger.h"

#include <exception>

namespace tarnwick {

const gpu::Texture* Enlarger::smaller(const PixelSize& size) {
    try {
        if (!quad_)
            quad_ = std::make_unique<OverlayQuad>(*device_, gpu::PixelFormat::bgra8Unorm);
    } catch (const std::exception&) { // no pipeline: the picture keeps its size
        return nullptr;
    }
    if (!smaller_ || smaller_->width() != size.width || smaller_->height() != size.height)
        smaller_ = device_->newTexture({.format = gpu::PixelFormat::bgra8Unorm,
                                        .width = size.width,
                                        .height = size.height,
                                        .usage = {.shaderRead = true, .renderTarget = true}});
    return smaller_.get();
}

bool Enlarger::enlarge(gpu::CommandBuffer& commands, const gpu::Texture& whole) {
    gpu::RenderPassDescriptor pass;
    pass.color.texture = &whole;
    pass.color.load = gpu::LoadAction::clear; // also the alpha, which the episode's may not reach
    auto encoder = commands.renderCommandEncoder(pass);
    if (!encoder)
        return false;
    quad_->draw(*encoder, *smaller_);
    encoder->endEncoding();
    return true;
}

} // namespace tarnwick
