#include "TarnwickGPU/Device/GraphicsPipeline.h"

#include "TarnwickGPU/Vulkan/ShaderModule.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <array>

namespace tarnwick::gpu {

namespace {

// In the order of the enumerations.
constexpr std::array blendFactors{VK_BLEND_FACTOR_ZERO, VK_BLEND_FACTOR_ONE,
                                  VK_BLEND_FACTOR_SRC_ALPHA, VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA};
constexpr std::array blendOperations{VK_BLEND_OP_ADD};
constexpr std::array topologies{VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST,
                                VK_PRIMITIVE_TOPOLOGY_POINT_LIST};

VkBlendFactor vulkan(BlendFactor factor) {
    return blendFactors[static_cast<std::size_t>(factor)];
}
VkBlendOp vulkan(BlendOperation operation) {
    return blendOperations[static_cast<std::size_t>(operation)];
}

VkPipelineColorBlendAttachmentState blending(const ColorAttachmentDescriptor& color,
                                             bool givesColor) {
    constexpr VkColorComponentFlags all = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT |
                                          VK_COLOR_COMPONENT_B_BIT | VK_COLOR_COMPONENT_A_BIT;
    return {.blendEnable = color.blends,
            .srcColorBlendFactor = vulkan(color.sourceRGB),
            .dstColorBlendFactor = vulkan(color.destinationRGB),
            .colorBlendOp = vulkan(color.rgbOperation),
            .srcAlphaBlendFactor = vulkan(color.sourceAlpha),
            .dstAlphaBlendFactor = vulkan(color.destinationAlpha),
            .alphaBlendOp = vulkan(color.alphaOperation),
            .colorWriteMask = givesColor ? all : 0};
}

constexpr std::array dynamicStates{
    VK_DYNAMIC_STATE_VIEWPORT,           VK_DYNAMIC_STATE_SCISSOR,
    VK_DYNAMIC_STATE_PRIMITIVE_TOPOLOGY, VK_DYNAMIC_STATE_PRIMITIVE_RESTART_ENABLE,
    VK_DYNAMIC_STATE_DEPTH_TEST_ENABLE,  VK_DYNAMIC_STATE_DEPTH_WRITE_ENABLE,
    VK_DYNAMIC_STATE_DEPTH_COMPARE_OP};

// The state that all pipelines of the layer share: no culling, and dynamic
// states that the encoder sets.
struct CommonState {
    VkPipelineVertexInputStateCreateInfo vertexInput{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO};
    VkPipelineViewportStateCreateInfo viewport{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO,
        .viewportCount = 1,
        .scissorCount = 1};
    VkPipelineRasterizationStateCreateInfo rasterization{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO,
        .polygonMode = VK_POLYGON_MODE_FILL,
        .cullMode = VK_CULL_MODE_NONE,
        .frontFace = VK_FRONT_FACE_CLOCKWISE,
        .lineWidth = 1};
    VkPipelineDepthStencilStateCreateInfo depthStencil{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO};
    VkPipelineDynamicStateCreateInfo dynamic{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO,
        .dynamicStateCount = dynamicStates.size(),
        .pDynamicStates = dynamicStates.data()};
};

struct Stages {
    std::array<VkPipelineShaderStageCreateInfo, 2> infos;
    VkSpecializationMapEntry entry{.constantID = msl::loopBudgetConstant,
                                   .size = sizeof(std::uint32_t)};
    VkSpecializationInfo constants;

    Stages(VkShaderModule vertex, VkShaderModule fragment, const std::uint32_t& loopBudget)
        : constants{1, &entry, sizeof loopBudget, &loopBudget} {
        infos[0] = stage(VK_SHADER_STAGE_VERTEX_BIT, vertex);
        infos[1] = stage(VK_SHADER_STAGE_FRAGMENT_BIT, fragment);
    }
    Stages(const Stages&) = delete;
    Stages& operator=(const Stages&) = delete;

    VkPipelineShaderStageCreateInfo stage(VkShaderStageFlagBits flag, VkShaderModule module) const {
        return {.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
                .stage = flag,
                .module = module,
                .pName = "main",
                .pSpecializationInfo = &constants};
    }
};

} // namespace

VkResult makeGraphicsPipeline(const DeviceState& device, const GraphicsPipelineNeeds& needs,
                              VkPipeline& pipeline) {
    const ShaderModule vertex(device.record.handle, needs.vertex);
    const ShaderModule fragment(device.record.handle, needs.fragment);
    if (!vertex.handle() || !fragment.handle())
        return VK_ERROR_UNKNOWN;
    const Stages stages(vertex.handle(), fragment.handle(), device.record.loopBudget);
    const CommonState common;
    const VkFormat colorFormat = vulkanFormat(needs.color.format);
    const std::uint32_t colors = colorFormat == VK_FORMAT_UNDEFINED ? 0 : 1;
    const VkPipelineRenderingCreateInfo rendering{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO,
        .colorAttachmentCount = colors,
        .pColorAttachmentFormats = &colorFormat,
        .depthAttachmentFormat = vulkanFormat(needs.depthFormat)};
    const VkPipelineInputAssemblyStateCreateInfo assembly{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO,
        .topology = topologies[static_cast<std::size_t>(needs.topology)]};
    const VkPipelineMultisampleStateCreateInfo multisample{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO,
        .rasterizationSamples = static_cast<VkSampleCountFlagBits>(needs.sampleCount)};
    const VkPipelineColorBlendAttachmentState attachment = blending(needs.color, needs.givesColor);
    const VkPipelineColorBlendStateCreateInfo blend{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO,
        .attachmentCount = colors,
        .pAttachments = &attachment};
    const VkGraphicsPipelineCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO,
        .pNext = &rendering,
        .stageCount = static_cast<std::uint32_t>(stages.infos.size()),
        .pStages = stages.infos.data(),
        .pVertexInputState = needs.vertexInput ? needs.vertexInput : &common.vertexInput,
        .pInputAssemblyState = &assembly,
        .pViewportState = &common.viewport,
        .pRasterizationState = &common.rasterization,
        .pMultisampleState = &multisample,
        .pDepthStencilState = &common.depthStencil,
        .pColorBlendState = &blend,
        .pDynamicState = &common.dynamic,
        .layout = needs.layout};
    return vkCreateGraphicsPipelines(device.record.handle, device.pipelineCache.handle(), 1, &info,
                                     nullptr, &pipeline);
}

} // namespace tarnwick::gpu
