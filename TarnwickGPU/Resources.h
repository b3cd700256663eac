// Buffers and textures. Resources/BufferParts.cpp and Resources/Texture.cpp implement them.
#pragma once

#include "TarnwickGPU/Format.h"

#include <cstddef>
#include <memory>

namespace tarnwick::gpu {

struct BufferParts;
struct TextureParts;

// GPU memory of fixed length. Its memory goes back once the GPU is done with it; no destructor
// waits.
class Buffer {
  public:
    explicit Buffer(std::unique_ptr<BufferParts> parts);
    ~Buffer();
    std::size_t length() const; // bytes
    // The bytes as the CPU sees them; null for StorageMode::private_. What the GPU wrote is there
    // once its command buffer has completed.
    void* contents() const;
    BufferParts& parts() const { return *parts_; }

  private:
    std::unique_ptr<BufferParts> parts_;
};

class Texture {
  public:
    explicit Texture(std::unique_ptr<TextureParts> parts);
    ~Texture();
    const TextureDescriptor& descriptor() const;
    std::uint32_t width() const { return descriptor().width; }
    std::uint32_t height() const { return descriptor().height; }

    // These are for StorageMode::shared alone, and take place at once on the CPU's side: the caller
    // sees to it that the GPU is not at work on the texture (as Metal asks). getBytes may block for
    // a copy. None does anything once the device is lost. A slice is an array's element or a
    // cube's face, 6 * element + face in an array of cubes; faces are in the order +x, -x, +y, -y,
    // +z, -z. `bytesPerImage` lies between planes of a 3D texture.
    void replace(const Region& region, std::uint32_t mipLevel, const void* bytes,
                 std::size_t bytesPerRow);
    void replace(const Region& region, std::uint32_t mipLevel, std::uint32_t slice,
                 const void* bytes, std::size_t bytesPerRow, std::size_t bytesPerImage);
    void getBytes(void* bytes, std::size_t bytesPerRow, const Region& region,
                  std::uint32_t mipLevel) const;
    void getBytes(void* bytes, std::size_t bytesPerRow, std::size_t bytesPerImage,
                  const Region& region, std::uint32_t mipLevel, std::uint32_t slice) const;

    // Where the CPU sees the pixels in place: those of a shared 2D texture of one level on a CPU
    // driver. Elsewhere there are no bytes. What the GPU wrote is there once its command buffer has
    // completed; the CPU may write while the GPU is not at work on the texture.
    struct MappedPixels {
        std::byte* bytes = nullptr;
        std::size_t bytesPerRow = 0;
        std::size_t length = 0; // bytes that the texture owns from `bytes` on
    };
    MappedPixels mapped() const;
    TextureParts& parts() const { return *parts_; }

  private:
    std::unique_ptr<TextureParts> parts_;
};

} // namespace tarnwick::gpu
