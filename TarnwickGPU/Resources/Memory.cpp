#include "TarnwickGPU/Resources/Memory.h"

#include "TarnwickGPU/Vulkan/Graveyard.h"

#include <array>
#include <bit>

namespace tarnwick::gpu {

namespace {

struct Wish {
    VkMemoryPropertyFlags required;
    VkMemoryPropertyFlags preferred;
};

constexpr VkMemoryPropertyFlags reachable =
    VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT;

constexpr std::array<Wish, 3> wishes{{
    {0, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT},         // gpuOnly
    {reachable, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT}, // upload
    {reachable, VK_MEMORY_PROPERTY_HOST_CACHED_BIT},  // readBack
}};

// The type with all required and most of the preferred properties. The first of equals, since
// drivers order their types by speed (Vulkan 1.3, 11.2.1).
std::optional<std::uint32_t> memoryType(const DeviceRecord& device,
                                        const VkMemoryRequirements& needs, Wish wish) {
    std::optional<std::uint32_t> best;
    int bestScore = -1;
    for (std::uint32_t type = 0; type < device.memory.memoryTypeCount; ++type) {
        const VkMemoryType& one = device.memory.memoryTypes[type];
        const bool fits = (needs.memoryTypeBits & (1u << type)) != 0 &&
                          (one.propertyFlags & wish.required) == wish.required &&
                          needs.size <= device.memory.memoryHeaps[one.heapIndex].size;
        const int score = std::popcount(one.propertyFlags & wish.preferred);
        if (fits && score > bestScore) {
            best = type;
            bestScore = score;
        }
    }
    return best;
}

VkDeviceMemory allocate(const DeviceRecord& device, const VkMemoryRequirements& needs, Wish wish,
                        VkMemoryAllocateFlags flags = 0) {
    const auto type = memoryType(device, needs, wish);
    if (!type)
        return VK_NULL_HANDLE;
    const VkMemoryAllocateFlagsInfo flagged{.sType = VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_FLAGS_INFO,
                                            .flags = flags};
    const VkMemoryAllocateInfo info{.sType = VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO,
                                    .pNext = flags ? &flagged : nullptr,
                                    .allocationSize = needs.size,
                                    .memoryTypeIndex = *type};
    VkDeviceMemory memory = VK_NULL_HANDLE;
    if (vkAllocateMemory(device.handle, &info, nullptr, &memory) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return memory;
}

bool giveMemory(const DeviceRecord& device, BufferMemory& made, MemoryUse use) {
    VkMemoryRequirements needs;
    vkGetBufferMemoryRequirements(device.handle, made.buffer, &needs);
    const Wish wish = wishes[static_cast<std::size_t>(use)];
    made.memory = allocate(device, needs, wish,
                           device.features.addresses
                               ? VkMemoryAllocateFlags{VK_MEMORY_ALLOCATE_DEVICE_ADDRESS_BIT}
                               : 0);
    if (!made.memory ||
        vkBindBufferMemory(device.handle, made.buffer, made.memory, 0) != VK_SUCCESS)
        return false;
    if (device.features.addresses) {
        const VkBufferDeviceAddressInfo info{.sType = VK_STRUCTURE_TYPE_BUFFER_DEVICE_ADDRESS_INFO,
                                             .buffer = made.buffer};
        made.address = vkGetBufferDeviceAddress(device.handle, &info);
    }
    if (use == MemoryUse::gpuOnly)
        return true;
    void* mapped = nullptr;
    if (vkMapMemory(device.handle, made.memory, 0, VK_WHOLE_SIZE, 0, &mapped) != VK_SUCCESS)
        return false;
    made.bytes = static_cast<std::byte*>(mapped);
    return true;
}

} // namespace

std::optional<BufferMemory> makeBufferMemory(const DeviceRecord& device, VkDeviceSize size,
                                             MemoryUse use) {
    if (size == 0 || size > device.maxBufferSize)
        return std::nullopt;
    BufferMemory made{.size = size};
    const VkBufferUsageFlags addressed =
        device.features.addresses ? VkBufferUsageFlags{VK_BUFFER_USAGE_SHADER_DEVICE_ADDRESS_BIT}
                                  : 0;
    // Whole words: shaders for devices without small types read the last bytes in one.
    const VkBufferCreateInfo info{.sType = VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO,
                                  .size = (size + 3) / 4 * 4,
                                  .usage = anyBufferUsage | addressed};
    if (vkCreateBuffer(device.handle, &info, nullptr, &made.buffer) != VK_SUCCESS)
        return std::nullopt;
    if (!giveMemory(device, made, use)) {
        vkDestroyBuffer(device.handle, made.buffer, nullptr);
        if (made.memory)
            vkFreeMemory(device.handle, made.memory, nullptr);
        return std::nullopt;
    }
    return made;
}

VkDeviceMemory makeImageMemory(const DeviceRecord& device, VkImage image, MemoryUse use) {
    VkMemoryRequirements needs;
    vkGetImageMemoryRequirements(device.handle, image, &needs);
    VkDeviceMemory memory = allocate(device, needs, wishes[static_cast<std::size_t>(use)]);
    if (memory && vkBindImageMemory(device.handle, image, memory, 0) != VK_SUCCESS) {
        vkFreeMemory(device.handle, memory, nullptr);
        return VK_NULL_HANDLE;
    }
    return memory;
}

void bury(Graveyard& graveyard, BufferMemory& memory) {
    graveyard.bury(memory.buffer, memory.memory);
    memory = {};
}

} // namespace tarnwick::gpu
