// Lets the GPU draw into the pixel buffers of a film.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

// On a CPU driver the buffers' memory is that of the textures that are drawn into, so that nothing
// is copied. Elsewhere one texture is drawn into and read back.
class PixelBufferTextures {
  public:
    // Null for a size that the device has no textures of, or where memory is out. The device
    // outlives this.
    static std::unique_ptr<PixelBufferTextures> make(gpu::Device& device, std::int64_t width,
                                                     std::int64_t height);

    // For the writer's pool; empty where any memory will do.
    PixelAllocator allocator() const;

    // What to draw into for `buffer`, one of that pool's, of the size and in pixels. Valid as long
    // as the buffer.
    const gpu::Texture& target(const PixelBuffer& buffer) const;
    // Once the GPU is done with the target: brings its pixels into `buffer`. May block for a copy.
    void finish(const PixelBuffer& buffer) const;

  private:
    explicit PixelBufferTextures(gpu::Device& device) : device_(device) {}

    gpu::Device& device_;
    gpu::TextureDescriptor descriptor_;
    std::unique_ptr<gpu::Texture> readBack_; // null: the buffers are textures themselves
};

} // namespace tarnwick
