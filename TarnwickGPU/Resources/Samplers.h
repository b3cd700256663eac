// The Vulkan samplers of a device, one for each sampler state that a program names.
#pragma once

#include "TarnwickGPU/Vulkan/DeviceRecord.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace tarnwick::gpu {

// The two samplers that one state is: Vulkan's compare always or never.
struct SamplerParts {
    std::shared_ptr<const void> keepsAlive; // the device, which owns the samplers
    VkSampler plain = VK_NULL_HANDLE, comparing = VK_NULL_HANDLE;
};

class Samplers {
  public:
    explicit Samplers(const DeviceRecord& device) : device_(device) {}

    // The sampler of TarnwickMSL/SamplerBits.h's bits; it lives as long as the device. Null when
    // the device has no more. Any thread.
    VkSampler sampler(std::uint64_t bits);
    void stop(); // the GPU is idle

  private:
    const DeviceRecord& device_;
    std::mutex mutex_;
    std::map<std::uint64_t, VkSampler> samplers_;
};

} // namespace tarnwick::gpu
