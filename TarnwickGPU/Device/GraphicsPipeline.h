// One Vulkan pipeline of a vertex and a fragment module.
#pragma once

#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Pipeline.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <span>

namespace tarnwick::gpu {

struct GraphicsPipelineNeeds {
    std::span<const std::uint32_t> vertex, fragment; // SPIR-V
    VkPipelineLayout layout = VK_NULL_HANDLE;
    ColorAttachmentDescriptor color;
    bool givesColor = true; // else the target stays as it is
    PixelFormat depthFormat = PixelFormat::invalid;
    std::uint32_t sampleCount = 1;
    TopologyClass topology = TopologyClass::triangle;
};

VkResult makeGraphicsPipeline(const DeviceState& device, const GraphicsPipelineNeeds& needs,
                              VkPipeline& pipeline);

} // namespace tarnwick::gpu
