// Buffers and textures. Resources/Buffer.cpp and Resources/Texture.cpp implement them.
#pragma once

#include "TarnwickGPU/Format.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace tarnwick::gpu {

struct BufferParts;
struct TextureParts;
class Texture;

// GPU memory of fixed length. A destroyed buffer or texture is freed once the GPU has finished the
// command buffers that use it; the destructor does not wait.
class Buffer {
  public:
    explicit Buffer(std::shared_ptr<BufferParts> parts);
    ~Buffer();
    std::size_t length() const; // bytes
    // The bytes in the CPU's memory; null for StorageMode::private_. The GPU's stores are there
    // once their command buffer has completed.
    void* contents() const;
    // The address at which shaders find the first byte, for pointers in other buffers. 0 if the
    // device has no such addresses (bufferDeviceAddress).
    std::uint64_t gpuAddress() const;
    // A texture of type typeTextureBuffer: texels of the buffer from the byte `offset` on, which
    // the texture keeps. Its storage is the buffer's. Null if the device does not support the
    // format, the width or the offset, or if the texels are not in the buffer. `bytesPerRow` is at
    // least the bytes of the texels.
    std::unique_ptr<Texture> newTexture(const TextureDescriptor& descriptor, std::size_t offset,
                                        std::size_t bytesPerRow) const;
    BufferParts& parts() const { return *parts_; }

  private:
    std::shared_ptr<BufferParts> parts_; // shared with the textures over the buffer
};

class Texture {
  public:
    explicit Texture(std::unique_ptr<TextureParts> parts);
    ~Texture();
    const TextureDescriptor& descriptor() const;
    std::uint32_t width() const { return descriptor().width; }
    std::uint32_t height() const { return descriptor().height; }

    // Copy pixels at once, only for StorageMode::shared. The caller makes sure that no command
    // buffer in flight uses the texture. getBytes may block for a copy on the GPU. They do nothing
    // once the device is lost. A slice is an array's element or a cube's face, 6 * element + face
    // in an array of cubes; faces are in the order +x, -x, +y, -y, +z, -z. `bytesPerImage` is the
    // distance in bytes between two planes of a 3D texture.
    void replace(const Region& region, std::uint32_t mipLevel, const void* bytes,
                 std::size_t bytesPerRow);
    void replace(const Region& region, std::uint32_t mipLevel, std::uint32_t slice,
                 const void* bytes, std::size_t bytesPerRow, std::size_t bytesPerImage);
    void getBytes(void* bytes, std::size_t bytesPerRow, const Region& region,
                  std::uint32_t mipLevel) const;
    void getBytes(void* bytes, std::size_t bytesPerRow, std::size_t bytesPerImage,
                  const Region& region, std::uint32_t mipLevel, std::uint32_t slice) const;

    // The texture's own pixels in the CPU's memory: for a shared 2D texture of one level on a CPU
    // driver, and for a shared texture over a buffer. Otherwise `bytes` is null. The GPU's stores
    // are there once their command buffer has completed; the CPU may write while no command buffer
    // in flight uses the texture.
    struct MappedPixels {
        std::byte* bytes = nullptr;
        std::size_t bytesPerRow = 0;
        std::size_t length = 0; // bytes of the texture from `bytes` on
    };
    MappedPixels mapped() const;
    // The number that stands for the texture in an argument buffer; 0 for a drawable's.
    std::uint64_t gpuResourceID() const;
    TextureParts& parts() const { return *parts_; }

  private:
    std::unique_ptr<TextureParts> parts_;
};

} // namespace tarnwick::gpu
