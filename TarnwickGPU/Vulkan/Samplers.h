// The Vulkan samplers of a device, one for each sampler state that a program names.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace tarnwick::gpu {

struct DeviceState;

// The two samplers that one state is: Vulkan's compare always or never.
struct SamplerParts {
    std::shared_ptr<DeviceState> device; // keeps them alive
    VkSampler plain = VK_NULL_HANDLE, comparing = VK_NULL_HANDLE;
};

class Samplers {
  public:
    // The sampler of TarnwickMSL/SamplerBits.h's bits; it lives as long as the device. Null when
    // the device has no more. Any thread.
    VkSampler sampler(DeviceState& device, std::uint64_t bits);
    void stop(VkDevice device);

  private:
    std::mutex mutex_;
    std::map<std::uint64_t, VkSampler> samplers_;
};

} // namespace tarnwick::gpu
