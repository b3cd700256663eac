// Copies a picture onto a frame.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <memory>

namespace tarnwick {

class OverlayQuad {
  public:
    // `format` is that of the target. Throws gpu::LibraryError, gpu::DeviceError or ShaderError.
    OverlayQuad(gpu::Device& device, gpu::PixelFormat format);

    // Encodes a quad over the viewport. The overlay's alpha is premultiplied.
    void draw(gpu::RenderCommandEncoder& encoder, const gpu::Texture& overlay) const;

  private:
    std::unique_ptr<gpu::RenderPipelineState> pipeline_;
};

} // namespace tarnwick
