// Lets the GPU draw into the pixel buffers of a movie.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "TarnwickRender/Pictures/PictureConversion.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

// Where drawn pixels become what a movie's encoder takes: the bytes are the same.
enum class ColorConversionPlace {
    chosen, // on the GPU, unless pictures are drawn by the processor, which is quicker at it itself
    gpu,
    writer, // by the writer's threads
};

// On a CPU driver the buffers' memory is that of the textures that are drawn into, so that nothing
// is copied. Elsewhere one texture is drawn into and converted on the GPU into the buffers' memory,
// or read back.
class PixelBufferTextures {
  public:
    // Null for a size that the device has no textures of, or where memory is out. The device
    // outlives this. `encoderFormat` is what conversion on the GPU gives.
    static std::unique_ptr<PixelBufferTextures> make(gpu::Device& device, std::int64_t width,
                                                     std::int64_t height, PixelFormat encoderFormat,
                                                     ColorConversionPlace place);

    // For the writer's pool: whether its buffers are converted, and their memory; empty where any
    // will do.
    VideoSettings::Source source() const;
    PixelAllocator allocator() const;

    // What to draw into for `buffer`, one of that pool's and of the size. Valid as long as the
    // buffer.
    const gpu::Texture& target(const PixelBuffer& buffer) const;
    // Behind the drawing: encodes what must still be done on the GPU. False where it cannot.
    bool encodeConversion(gpu::CommandBuffer& commands, const PixelBuffer& buffer) const;
    // Once the GPU is done: brings the picture into `buffer`. May block for a copy.
    void finish(const PixelBuffer& buffer) const;

  private:
    explicit PixelBufferTextures(gpu::Device& device) : device_(device) {}

    gpu::Device& device_;
    gpu::TextureDescriptor descriptor_;
    std::unique_ptr<gpu::Texture> drawn_;           // null: the buffers are textures themselves
    std::unique_ptr<PictureConversion> conversion_; // null: the writer converts
};

} // namespace tarnwick
