// Pixel formats and texture descriptors. Vulkan/VulkanFormat.cpp has the table of the formats.
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
    depth32Float,
    depth16Unorm,
    r8Snorm,
    r8Uint,
    r8Sint,
    r16Unorm,
    r16Snorm,
    r16Uint,
    r16Sint,
    r16Float,
    rg8Unorm,
    rg8Snorm,
    rg8Uint,
    rg8Sint,
    r32Sint,
    rg16Unorm,
    rg16Snorm,
    rg16Uint,
    rg16Sint,
    rg16Float,
    rgba8UnormSRGB,
    bgra8UnormSRGB,
    rgba8Snorm,
    rgba8Uint,
    rgba8Sint,
    rgb10a2Unorm,
    rgb10a2Uint,
    rg11b10Float,
    rgb9e5Float,
    rg32Uint,
    rg32Sint,
    rg32Float,
    rgba16Unorm,
    rgba16Snorm,
    rgba16Uint,
    rgba16Sint,
    rgba32Uint,
    rgba32Sint
};

// Bytes of one pixel; 0 for `invalid`.
std::size_t bytesPerPixel(PixelFormat format);

bool isDepth(PixelFormat format); // depth32Float or depth16Unorm

enum class TextureType : std::uint8_t {
    type2D,
    type2DMultisample,
    type1D,
    type1DArray,
    type2DArray,
    type2DMultisampleArray,
    type3D,
    typeCube,
    typeCubeArray,
    typeTextureBuffer
};

// Who reads and writes the bytes: the CPU and the GPU, or the GPU alone.
enum class StorageMode : std::uint8_t { shared, private_ };

struct TextureUsage {
    bool shaderRead = true;
    bool shaderWrite = false;
    bool renderTarget = false; // only of 2D textures, their arrays and cubes

    bool operator==(const TextureUsage&) const = default;
};

struct TextureDescriptor {
    TextureType type = TextureType::type2D;
    PixelFormat format = PixelFormat::bgra8Unorm;
    std::uint32_t width = 1;       // pixels
    std::uint32_t height = 1;      // pixels
    std::uint32_t depth = 1;       // pixels; 1 unless the texture is 3D
    std::uint32_t mipLevels = 1;   // [1, number of levels down to one pixel]
    std::uint32_t sampleCount = 1; // 1 or 4
    std::uint32_t arrayLength = 1; // elements of an array; a cube is one element
    TextureUsage usage;
    StorageMode storage = StorageMode::shared;

    bool operator==(const TextureDescriptor&) const = default;
};

// A render pass and its pipelines have colour attachments 0 to 7.
inline constexpr std::size_t mostColors = 8;

// The number of 2D images in the texture: elements of an array, six for each cube.
std::uint32_t slices(const TextureDescriptor& descriptor);

// A part of one level.
struct Region {
    std::uint32_t x = 0, y = 0;          // pixels, from the upper left
    std::uint32_t width = 0, height = 0; // pixels
    std::uint32_t z = 0, depth = 1;      // pixels of a 3D texture, from the first plane
};

} // namespace tarnwick::gpu
