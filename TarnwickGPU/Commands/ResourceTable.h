// The resources that an encoder has bound for one stage, by Metal's indices.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <vulkan/vulkan.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnwick::gpu {

struct SamplerParts;
struct TextureParts;

inline constexpr std::uint32_t buffersPerStage = msl::mostBuffers;
// The buffers of a draw of patches follow those of the encoder's indices in the vertex table.
inline constexpr std::uint32_t factorBuffer = 31, controlPointIndexBuffer = 32;

struct BoundBuffer {
    VkBuffer buffer = VK_NULL_HANDLE; // null: nothing bound
    VkDeviceSize offset = 0;
    VkDeviceSize size = 0;            // bytes from `offset` on
    const std::byte* bytes = nullptr; // the copy that setBytes made; null for a Buffer
    // The bytes in the CPU's memory, of a Buffer too; null if it has none.
    const std::byte* contents = nullptr;
    VkDeviceAddress address = 0; // at `offset`; 0 if the device has no addresses
};

struct ResourceTable {
    std::array<BoundBuffer, buffersPerStage + 2> buffers;
    std::array<const TextureParts*, msl::mostTextures> textures{};
    std::array<const SamplerParts*, msl::mostSamplers> samplers{};
};

} // namespace tarnwick::gpu
