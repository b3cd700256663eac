// The machine's usable Vulkan devices, and which of them is taken.
#pragma once

#include "TarnwickGPU/DeviceInfo.h"

#include <vulkan/vulkan.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tarnwick::gpu {

struct PhysicalDevice {
    VkPhysicalDevice handle = VK_NULL_HANDLE;
    std::uint32_t queueFamily = 0; // one that does graphics and compute
    std::uint32_t queueCount = 1;  // that the family has
    DeviceInfo info;
};

// Those that do Vulkan 1.3 with what every module needs; preferred ones first: discrete,
// integrated, virtual, the CPU's, and among equals the one with more memory of its own.
std::vector<PhysicalDevice> usableDevices(VkInstance instance);

// Which of `devices` is meant: the first where nothing is wanted, else the one that `wanted` names
// by number or by a part of its name (any case). Nothing when it fits none.
std::optional<std::size_t> chooseDevice(std::span<const DeviceInfo> devices,
                                        std::optional<std::string_view> wanted);

} // namespace tarnwick::gpu
