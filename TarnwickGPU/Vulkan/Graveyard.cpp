#include "TarnwickGPU/Vulkan/Graveyard.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

void destroy(VkDevice device, VkObjectType type, std::uint64_t handle) {
    switch (type) {
    case VK_OBJECT_TYPE_BUFFER:
        return vkDestroyBuffer(device, reinterpret_cast<VkBuffer>(handle), nullptr);
    case VK_OBJECT_TYPE_IMAGE:
        return vkDestroyImage(device, reinterpret_cast<VkImage>(handle), nullptr);
    case VK_OBJECT_TYPE_BUFFER_VIEW:
        return vkDestroyBufferView(device, reinterpret_cast<VkBufferView>(handle), nullptr);
    case VK_OBJECT_TYPE_IMAGE_VIEW:
        return vkDestroyImageView(device, reinterpret_cast<VkImageView>(handle), nullptr);
    case VK_OBJECT_TYPE_DEVICE_MEMORY:
        return vkFreeMemory(device, reinterpret_cast<VkDeviceMemory>(handle), nullptr);
    case VK_OBJECT_TYPE_PIPELINE:
        return vkDestroyPipeline(device, reinterpret_cast<VkPipeline>(handle), nullptr);
    case VK_OBJECT_TYPE_PIPELINE_LAYOUT:
        return vkDestroyPipelineLayout(device, reinterpret_cast<VkPipelineLayout>(handle), nullptr);
    case VK_OBJECT_TYPE_DESCRIPTOR_SET_LAYOUT:
        return vkDestroyDescriptorSetLayout(device, reinterpret_cast<VkDescriptorSetLayout>(handle),
                                            nullptr);
    case VK_OBJECT_TYPE_DESCRIPTOR_POOL:
        return vkDestroyDescriptorPool(device, reinterpret_cast<VkDescriptorPool>(handle), nullptr);
    case VK_OBJECT_TYPE_COMMAND_POOL:
        return vkDestroyCommandPool(device, reinterpret_cast<VkCommandPool>(handle), nullptr);
    default:
        return; // add() takes no other types
    }
}

} // namespace

void Graveyard::add(std::uint64_t lastSubmission, VkObjectType type, std::uint64_t handle) {
    if (!handle)
        return;
    // Two threads may arrive in the other order than their numbers; the larger number is safe for
    // both.
    if (!remains_.empty())
        lastSubmission = std::max(lastSubmission, remains_.back().lastSubmission);
    remains_.push_back({lastSubmission, type, handle});
}

void Graveyard::destroyUpTo(std::uint64_t completed) {
    std::lock_guard lock(mutex_);
    auto end = std::find_if(remains_.begin(), remains_.end(), [completed](const Remains& one) {
        return one.lastSubmission > completed;
    });
    for (auto one = remains_.begin(); one != end; ++one)
        destroy(device_.handle, one->type, one->handle);
    remains_.erase(remains_.begin(), end);
}

} // namespace tarnwick::gpu
