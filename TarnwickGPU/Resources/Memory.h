// Vulkan buffers and images with the memory that they lie in. One allocation each: the layer's
// objects are few and large.
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
    upload,  // written by the CPU, read by the GPU: near the GPU where the CPU can reach that
    readBack // read by the CPU: cached where the device has such memory
};

struct BufferMemory {
    VkBuffer buffer = VK_NULL_HANDLE;
    VkDeviceMemory memory = VK_NULL_HANDLE;
    std::byte* bytes = nullptr; // as the CPU sees them, coherent; null for gpuOnly
    VkDeviceSize size = 0;
};

// What every buffer of the layer may be used as.
inline constexpr VkBufferUsageFlags anyBufferUsage =
    VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT | VK_BUFFER_USAGE_STORAGE_BUFFER_BIT |
    VK_BUFFER_USAGE_INDIRECT_BUFFER_BIT | VK_BUFFER_USAGE_TRANSFER_SRC_BIT |
    VK_BUFFER_USAGE_TRANSFER_DST_BIT;

// Nothing when memory is out or the device does not take that size. The bytes are undefined.
std::optional<BufferMemory> makeBufferMemory(const DeviceRecord& device, VkDeviceSize size,
                                             MemoryUse use);

// Gives `image` memory of its own; null when it is out. The CPU may map what is not gpuOnly.
VkDeviceMemory makeImageMemory(const DeviceRecord& device, VkImage image, MemoryUse use);

// Hands the buffer to the graveyard and forgets it.
void bury(Graveyard& graveyard, BufferMemory& memory);

} // namespace tarnwick::gpu
