// The Vulkan side of a Device, shared by every object that the device made.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Vulkan/DeviceFeatures.h"
#include "TarnwickGPU/Vulkan/Graveyard.h"
#include "TarnwickGPU/Vulkan/Instance.h"
#include "TarnwickGPU/Vulkan/Memory.h"
#include "TarnwickGPU/Vulkan/PhysicalDevices.h"
#include "TarnwickGPU/Vulkan/PipelineCache.h"
#include "TarnwickGPU/Vulkan/PointSums.h"
#include "TarnwickGPU/Vulkan/PointTraits.h"
#include "TarnwickGPU/Vulkan/Samplers.h"
#include "TarnwickGPU/Vulkan/StandIns.h"
#include "TarnwickGPU/Vulkan/Submissions.h"
#include "TarnwickGPU/Vulkan/Transfers.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <memory>

namespace tarnwick::gpu {

struct DeviceState {
    // Null when the device cannot be opened.
    static std::shared_ptr<DeviceState> make(std::shared_ptr<Instance> instance,
                                             const PhysicalDevice& chosen);

    DeviceState() = default;
    ~DeviceState(); // the one place that waits until the GPU is idle
    DeviceState(const DeviceState&) = delete;
    DeviceState& operator=(const DeviceState&) = delete;

    // Hands handles to the graveyard, to go in the order given. Any thread.
    template <typename... Handles> void bury(Handles... handles) {
        graveyard.bury(submissions.last(), handles...);
    }

    std::shared_ptr<Instance> instance;
    VkPhysicalDevice physical = VK_NULL_HANDLE;
    VkDevice handle = VK_NULL_HANDLE;
    std::uint32_t queueFamily = 0;
    std::uint32_t queueCount = 1; // that are used: 1, or 2
    DeviceInfo info;
    DeviceFeatures features;
    VkPhysicalDeviceLimits limits{};
    VkDeviceSize maxBufferSize = 0;
    VkPhysicalDeviceMemoryProperties memory{};
    PFN_vkCmdPushDescriptorSetKHR pushDescriptorSet = nullptr; // null: not there
    std::uint32_t loopBudget = 0; // iterations that an invocation may spend; the shaders' constant
    PointTraits points;
    PointSumsKeeper pointSums;

    Submissions submissions;
    Graveyard graveyard;
    Transfers transfers;
    Samplers samplers;
    StandIns standIns;
    PipelineCache pipelineCache;
};

} // namespace tarnwick::gpu
