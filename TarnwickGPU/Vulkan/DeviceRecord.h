// The data of a device that its objects read: handles, features, limits and memory types. Filled
// when the device is opened, then constant. Its owner is DeviceState.
#pragma once

#include "TarnwickGPU/DeviceInfo.h"
#include "TarnwickGPU/Vulkan/DeviceFeatures.h"
#include "TarnwickGPU/Vulkan/PointTraits.h"

#include <vulkan/vulkan.h>

#include <cstdint>

namespace tarnwick::gpu {

struct PhysicalDevice;

struct DeviceRecord {
    VkPhysicalDevice physical = VK_NULL_HANDLE;
    VkDevice handle = VK_NULL_HANDLE;
    std::uint32_t queueFamily = 0;
    std::uint32_t queueCount = 1; // queues of the family in use: 1 or 2
    DeviceInfo info;
    DeviceFeatures features;
    VkPhysicalDeviceLimits limits{};
    VkDeviceSize maxBufferSize = 0; // bytes
    VkPhysicalDeviceMemoryProperties memory{};
    PFN_vkCmdPushDescriptorSetKHR pushDescriptorSet = nullptr; // null: not supported
    std::uint32_t loopBudget = 0; // iterations per invocation; the shaders' specialisation constant
    PointTraits points;
    std::uint64_t processors = 1;    // of the machine
    std::uint64_t unitsOfPieces = 0; // pixels, vertices or threads of each piece; 0: by its time
};

// `handle` is null if the driver does not open the device; else the caller destroys it. The device
// presents on windows only if the instance has surfaces.
DeviceRecord openDevice(const PhysicalDevice& chosen, bool hasSurfaces);

} // namespace tarnwick::gpu
