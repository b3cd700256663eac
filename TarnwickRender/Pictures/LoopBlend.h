// Mixes two frames into one: the crossfade that makes a clip loop.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <memory>

namespace tarnwick {

class LoopBlend {
  public:
    // `format` is that of the target. Throws gpu::LibraryError, gpu::DeviceError or ShaderError.
    LoopBlend(gpu::Device& device, gpu::PixelFormat format);

    // Encodes a quad over the whole target: to * (1 - weight) + from * weight, alpha included.
    // Both textures have the target's size.
    void draw(gpu::RenderCommandEncoder& encoder, const gpu::Texture& from, const gpu::Texture& to,
              float weight) const;

  private:
    std::unique_ptr<gpu::RenderPipelineState> pipeline_;
};

} // namespace tarnwick
