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
    const VkPipelineVertexInputStateCreateInfo* vertexInput = nullptr; // null: no vertex buffers
    ColorAttachmentDescriptor color;
    bool givesColor = true; // false: the target keeps its contents
    PixelFormat depthFormat = PixelFormat::invalid;
    std::uint32_t sampleCount = 1;
    TopologyClass topology = TopologyClass::triangle;
};

// Blocks while the driver compiles. `pipeline` is set only if the result is VK_SUCCESS.
VkResult makeGraphicsPipeline(const DeviceState& device, const GraphicsPipelineNeeds& needs,
                              VkPipeline& pipeline);

} // namespace tarnwick::gpu
