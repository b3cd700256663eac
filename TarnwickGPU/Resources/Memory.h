// Vulkan buffers and images with their memory. One allocation each: the layer's objects are few and
// large.
#pragma once

#include "TarnwickGPU/Vulkan/DeviceRecord.h"

#include <vulkan/vulkan.h>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tarnwick::gpu {

class Graveyard;

enum class MemoryUse : std::uint8_t {
    gpuOnly,
    upload,  // written by the CPU, read by the GPU: in the GPU's memory if the CPU can map it
    readBack // read by the CPU: cached if the device has such memory
};

struct BufferMemory {
    VkBuffer buffer = VK_NULL_HANDLE;
    VkDeviceMemory memory = VK_NULL_HANDLE;
    std::byte* bytes = nullptr; // mapped and coherent; null for gpuOnly
    VkDeviceSize size = 0;
    VkDeviceAddress address = 0; // 0 if the device has no bufferDeviceAddress
};

// The usage of every buffer of the layer, with addresses where the device has them.
inline constexpr VkBufferUsageFlags anyBufferUsage =
    VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT | VK_BUFFER_USAGE_STORAGE_BUFFER_BIT |
    VK_BUFFER_USAGE_VERTEX_BUFFER_BIT | VK_BUFFER_USAGE_INDEX_BUFFER_BIT |
    VK_BUFFER_USAGE_UNIFORM_TEXEL_BUFFER_BIT | VK_BUFFER_USAGE_STORAGE_TEXEL_BUFFER_BIT |
    VK_BUFFER_USAGE_INDIRECT_BUFFER_BIT | VK_BUFFER_USAGE_TRANSFER_SRC_BIT |
    VK_BUFFER_USAGE_TRANSFER_DST_BIT;

// Nothing if memory is exhausted or the device does not support the size. The bytes are undefined.
std::optional<BufferMemory> makeBufferMemory(const DeviceRecord& device, VkDeviceSize size,
                                             MemoryUse use);

// Binds memory of its own to `image`; null if out of memory. Memory that is not gpuOnly can be
// mapped.
VkDeviceMemory makeImageMemory(const DeviceRecord& device, VkImage image, MemoryUse use);

// Hands the buffer to the graveyard and clears the record.
void bury(Graveyard& graveyard, BufferMemory& memory);

} // namespace tarnwick::gpu
