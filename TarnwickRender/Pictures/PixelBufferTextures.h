// Lets the GPU draw into the pixel buffers of a movie.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "TarnwickRender/Pictures/PictureConversion.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

// Where pictures are converted to the encoder's pixel format. The bytes are the same.
enum class ColorConversionPlace {
    chosen, // writer with a CPU driver, where it is faster, otherwise gpu
    gpu,
    writer, // by the writer's threads
};

// With a CPU driver the pixel buffers are the memory of the textures, without a copy. With a GPU
// all frames are drawn into one texture and converted into the buffers' memory, or read back.
class PixelBufferTextures {
  public:
    // Null if the size exceeds the device's or there is no memory. The device outlives this.
    // `encoderFormat` is the result of a conversion on the GPU.
    static std::unique_ptr<PixelBufferTextures> make(gpu::Device& device, std::int64_t width,
                                                     std::int64_t height, PixelFormat encoderFormat,
                                                     ColorConversionPlace place);

    // For the writer's pool: whether its buffers are converted already, and their memory; empty:
    // any memory.
    VideoSettings::Source source() const;
    PixelAllocator allocator() const;

    // The target of the frame in `buffer`, which is of that pool. Valid as long as the buffer.
    const gpu::Texture& target(const PixelBuffer& buffer) const;
    // After the drawing: encodes the conversion, if any. False if there is no encoder.
    bool encodeConversion(gpu::CommandBuffer& commands, const PixelBuffer& buffer) const;
    // After the GPU is done: copies the picture into `buffer`, if needed. May block.
    void finish(const PixelBuffer& buffer) const;

  private:
    explicit PixelBufferTextures(gpu::Device& device) : device_(device) {}

    gpu::Device& device_;
    gpu::TextureDescriptor descriptor_;
    std::unique_ptr<gpu::Texture> drawn_;           // null: the buffers are textures themselves
    std::unique_ptr<PictureConversion> conversion_; // null: the writer converts
};

} // namespace tarnwick
