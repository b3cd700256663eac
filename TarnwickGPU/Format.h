// Pixel formats, texture descriptions and sampling of the GPU layer.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tarnwick::gpu {

enum class PixelFormat : std::uint8_t {
    invalid,
    r8Unorm,
    rgba8Unorm,
    bgra8Unorm,
    r32Uint,
    r32Float,
    rgba16Float,
    rgba32Float,
    depth32Float
};

// Bytes of one pixel.
std::size_t bytesPerPixel(PixelFormat format);

enum class TextureType : std::uint8_t { type2D, type2DMultisample };

// Where the bytes lie: `shared` can be read and written by the CPU, `private_` by the GPU only.
enum class StorageMode : std::uint8_t { shared, private_ };

struct TextureUsage {
    bool shaderRead = true;
    bool shaderWrite = false;
    bool renderTarget = false;

    bool operator==(const TextureUsage&) const = default;
};

struct TextureDescriptor {
    TextureType type = TextureType::type2D;
    PixelFormat format = PixelFormat::bgra8Unorm;
    std::uint32_t width = 1;  // pixels
    std::uint32_t height = 1; // pixels
    std::uint32_t mipLevels = 1;
    std::uint32_t sampleCount = 1; // 1 or 4
    TextureUsage usage;
    StorageMode storage = StorageMode::shared;

    bool operator==(const TextureDescriptor&) const = default;
};

struct Region {
    std::uint32_t x = 0, y = 0;          // pixels, from the upper left
    std::uint32_t width = 0, height = 0; // pixels
};

} // namespace tarnwick::gpu
