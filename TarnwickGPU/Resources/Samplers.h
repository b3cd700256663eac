// The Vulkan samplers of a device, one for each state in use.
#pragma once

#include "TarnwickGPU/Vulkan/DeviceRecord.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace tarnwick::gpu {

// The two Vulkan samplers of one sampler state, since a Vulkan sampler compares always or never.
struct SamplerParts {
    std::shared_ptr<const void> keepsAlive; // the device, which owns the samplers
    VkSampler plain = VK_NULL_HANDLE, comparing = VK_NULL_HANDLE;
    std::uint64_t number = 0; // in an argument buffer: the bits of the state, and bit 63
};

class Samplers {
  public:
    explicit Samplers(const DeviceRecord& device) : device_(device) {}

    // The sampler of the bits of TarnwickMSL/SamplerBits.h; it lives as long as the device. Null if
    // the device does not support it or has no more samplers. Any thread.
    VkSampler sampler(std::uint64_t bits);
    void stop(); // the GPU is idle

  private:
    const DeviceRecord& device_;
    std::mutex mutex_;
    std::map<std::uint64_t, VkSampler> samplers_;
};

} // namespace tarnwick::gpu
