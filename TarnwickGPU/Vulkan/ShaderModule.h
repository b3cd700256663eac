// A Vulkan shader module, needed only while a pipeline is made.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <span>

namespace tarnwick::gpu {

class ShaderModule {
  public:
    ShaderModule(VkDevice device, std::span<const std::uint32_t> words); // SPIR-V
    ~ShaderModule();
    ShaderModule(const ShaderModule&) = delete;
    ShaderModule& operator=(const ShaderModule&) = delete;
    VkShaderModule handle() const { return handle_; } // null if the device refused it

  private:
    VkDevice device_;
    VkShaderModule handle_ = VK_NULL_HANDLE;
};

} // namespace tarnwick::gpu
