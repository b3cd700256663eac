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

inline constexpr std::uint32_t buffersPerStage = 31;
// The buffers of a draw of patches follow those of the encoder's indices in the vertex table.
inline constexpr std::uint32_t factorBuffer = 31, controlPointIndexBuffer = 32;

struct BoundBuffer {
    VkBuffer buffer = VK_NULL_HANDLE; // null: nothing bound
    VkDeviceSize offset = 0;
    VkDeviceSize size = 0;            // bytes from `offset` on
    const std::byte* bytes = nullptr; // the copy that setBytes made; null for a Buffer
};

struct ResourceTable {
    std::array<BoundBuffer, buffersPerStage + 2> buffers;
    std::array<const TextureParts*, msl::mostTextures> textures{};
    std::array<const SamplerParts*, msl::mostSamplers> samplers{};
};

} // namespace tarnwick::gpu
