// One Vulkan pipeline of a vertex and a fragment module.
#pragma once

#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Pipeline.h"

#include <vulkan/vulkan.h>

#include <array>
#include <cstdint>
#include <span>

namespace tarnwick::gpu {

struct GraphicsPipelineNeeds {
    std::span<const std::uint32_t> vertex, fragment;    // SPIR-V
    std::span<const std::uint32_t> control, evaluation; // of patches with one vertex; else empty
    VkPipelineLayout layout = VK_NULL_HANDLE;
    const VkPipelineVertexInputStateCreateInfo* vertexInput = nullptr; // null: no vertex buffers
    std::array<ColorAttachmentDescriptor, mostColors> colors;
    std::uint32_t givenColors = 1; // bit n: color(n); the other targets keep their contents
    bool readsColors = false;      // the fragment function takes colours so far
    PixelFormat depthFormat = PixelFormat::invalid;
    std::uint32_t sampleCount = 1;
    TopologyClass topology = TopologyClass::triangle;
};

// The colour attachments of a descriptor, as GraphicsPipelineNeeds has them.
std::array<ColorAttachmentDescriptor, mostColors> colorsOf(const RenderPipelineDescriptor&);

// Blocks while the driver compiles. `pipeline` is set only if the result is VK_SUCCESS.
VkResult makeGraphicsPipeline(const DeviceState& device, const GraphicsPipelineNeeds& needs,
                              VkPipeline& pipeline);

} // namespace tarnwick::gpu
