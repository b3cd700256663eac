#include "TarnwickGPU/Vulkan/ShaderModule.h"

namespace tarnwick::gpu {

ShaderModule::ShaderModule(VkDevice device, std::span<const std::uint32_t> words)
    : device_(device) {
    const VkShaderModuleCreateInfo info{.sType = VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO,
                                        .codeSize = words.size_bytes(),
                                        .pCode = words.data()};
    if (vkCreateShaderModule(device, &info, nullptr, &handle_) != VK_SUCCESS)
        handle_ = VK_NULL_HANDLE;
}

ShaderModule::~ShaderModule() {
    if (handle_)
        vkDestroyShaderModule(device_, handle_, nullptr);
}

} // namespace tarnwick::gpu
