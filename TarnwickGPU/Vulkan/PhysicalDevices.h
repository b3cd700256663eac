// The usable Vulkan devices of the machine, and the choice of one.
#pragma once

#include "TarnwickGPU/DeviceInfo.h"

#include <vulkan/vulkan.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::gpu {

struct PhysicalDevice {
    VkPhysicalDevice handle = VK_NULL_HANDLE;
    std::uint32_t queueFamily = 0; // a family with graphics and compute
    std::uint32_t queueCount = 1;  // queues of the family
    DeviceInfo info;
};

DeviceInfo deviceInfo(VkPhysicalDevice device);

// The names of the required version, queue and features that the device lacks.
std::vector<std::string> missingRequirements(VkPhysicalDevice device);

// The devices with Vulkan 1.3 and the features that the layer requires, in order of preference:
// discrete, integrated, virtual, CPU, and among equals the one with more memory of its own.
std::vector<PhysicalDevice> usableDevices(VkInstance instance);

// The index of the device that `wanted` names by its index or by a part of its name in any case.
// Default: the first. Nothing if there is no such device.
std::optional<std::size_t> chooseDevice(std::span<const DeviceInfo> devices,
                                        std::optional<std::string_view> wanted);

} // namespace tarnwick::gpu
