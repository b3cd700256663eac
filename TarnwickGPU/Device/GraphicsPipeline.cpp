#include "TarnwickGPU/Device/GraphicsPipeline.h"

#include "TarnwickGPU/Vulkan/ShaderModule.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <array>
#include <cstddef>
#include <deque>
#include <vector>

namespace tarnwick::gpu {

namespace {

// In the order of the enumerations.
constexpr std::array blendFactors{VK_BLEND_FACTOR_ZERO,
                                  VK_BLEND_FACTOR_ONE,
                                  VK_BLEND_FACTOR_SRC_COLOR,
                                  VK_BLEND_FACTOR_ONE_MINUS_SRC_COLOR,
                                  VK_BLEND_FACTOR_SRC_ALPHA,
                                  VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA,
                                  VK_BLEND_FACTOR_DST_COLOR,
                                  VK_BLEND_FACTOR_ONE_MINUS_DST_COLOR,
                                  VK_BLEND_FACTOR_DST_ALPHA,
                                  VK_BLEND_FACTOR_ONE_MINUS_DST_ALPHA,
                                  VK_BLEND_FACTOR_SRC_ALPHA_SATURATE,
                                  VK_BLEND_FACTOR_CONSTANT_COLOR,
                                  VK_BLEND_FACTOR_ONE_MINUS_CONSTANT_COLOR,
                                  VK_BLEND_FACTOR_CONSTANT_ALPHA,
                                  VK_BLEND_FACTOR_ONE_MINUS_CONSTANT_ALPHA,
                                  VK_BLEND_FACTOR_SRC1_COLOR,
                                  VK_BLEND_FACTOR_ONE_MINUS_SRC1_COLOR,
                                  VK_BLEND_FACTOR_SRC1_ALPHA,
                                  VK_BLEND_FACTOR_ONE_MINUS_SRC1_ALPHA};
constexpr std::array blendOperations{VK_BLEND_OP_ADD, VK_BLEND_OP_SUBTRACT,
                                     VK_BLEND_OP_REVERSE_SUBTRACT, VK_BLEND_OP_MIN,
                                     VK_BLEND_OP_MAX};
constexpr std::array topologies{VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST,
                                VK_PRIMITIVE_TOPOLOGY_POINT_LIST};

VkBlendFactor vulkan(BlendFactor factor) {
    return blendFactors[static_cast<std::size_t>(factor)];
}
VkBlendOp vulkan(BlendOperation operation) {
    return blendOperations[static_cast<std::size_t>(operation)];
}

VkColorComponentFlags vulkan(const ColorWriteMask& mask) {
    VkColorComponentFlags flags = 0;
    if (mask.red)
        flags |= VK_COLOR_COMPONENT_R_BIT;
    if (mask.green)
        flags |= VK_COLOR_COMPONENT_G_BIT;
    if (mask.blue)
        flags |= VK_COLOR_COMPONENT_B_BIT;
    if (mask.alpha)
        flags |= VK_COLOR_COMPONENT_A_BIT;
    return flags;
}

VkPipelineColorBlendAttachmentState blending(const ColorAttachmentDescriptor& color,
                                             bool givesColor) {
    return {.blendEnable = color.blends,
            .srcColorBlendFactor = vulkan(color.sourceRGB),
            .dstColorBlendFactor = vulkan(color.destinationRGB),
            .colorBlendOp = vulkan(color.rgbOperation),
            .srcAlphaBlendFactor = vulkan(color.sourceAlpha),
            .dstAlphaBlendFactor = vulkan(color.destinationAlpha),
            .alphaBlendOp = vulkan(color.alphaOperation),
            .colorWriteMask = givesColor ? vulkan(color.writeMask) : 0};
}

constexpr std::array dynamicStates{
    VK_DYNAMIC_STATE_VIEWPORT,           VK_DYNAMIC_STATE_SCISSOR,
    VK_DYNAMIC_STATE_PRIMITIVE_TOPOLOGY, VK_DYNAMIC_STATE_PRIMITIVE_RESTART_ENABLE,
    VK_DYNAMIC_STATE_DEPTH_TEST_ENABLE,  VK_DYNAMIC_STATE_DEPTH_WRITE_ENABLE,
    VK_DYNAMIC_STATE_DEPTH_COMPARE_OP,   VK_DYNAMIC_STATE_BLEND_CONSTANTS};

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

// The attachments up to the last that has a format.
struct Colors {
    std::array<VkFormat, mostColors> formats{};
    std::array<VkPipelineColorBlendAttachmentState, mostColors> states{};
    std::uint32_t count = 0;

    explicit Colors(const GraphicsPipelineNeeds& needs) {
        for (std::uint32_t n = 0; n < mostColors; ++n) {
            formats[n] = vulkanFormat(needs.colors[n].format);
            states[n] = blending(needs.colors[n], (needs.givenColors >> n & 1) != 0);
            if (formats[n] != VK_FORMAT_UNDEFINED)
                count = n + 1;
        }
    }
};

struct ConstantValues {
    std::uint32_t loopBudget = 0, sampleCount = 1;
};
constexpr std::array constantEntries{
    VkSpecializationMapEntry{msl::loopBudgetConstant, offsetof(ConstantValues, loopBudget),
                             sizeof(std::uint32_t)},
    VkSpecializationMapEntry{msl::sampleCountConstant, offsetof(ConstantValues, sampleCount),
                             sizeof(std::uint32_t)}};

// The stages of a pipeline and their modules.
struct Stages {
    std::deque<ShaderModule> modules; // which do not move
    std::vector<VkPipelineShaderStageCreateInfo> infos;
    ConstantValues values;
    VkSpecializationInfo constants;

    explicit Stages(const ConstantValues& given)
        : values(given), constants{constantEntries.size(), constantEntries.data(), sizeof values,
                                   &values} {}
    Stages(const Stages&) = delete;
    Stages& operator=(const Stages&) = delete;

    // False if the module cannot be made. Adds nothing if there are no words.
    bool add(VkDevice device, VkShaderStageFlagBits flag, std::span<const std::uint32_t> words) {
        if (words.empty())
            return true;
        const ShaderModule& module = modules.emplace_back(device, words);
        infos.push_back({.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
                         .stage = flag,
                         .module = module.handle(),
                         .pName = "main",
                         .pSpecializationInfo = &constants});
        return module.handle() != VK_NULL_HANDLE;
    }
};

} // namespace

std::array<ColorAttachmentDescriptor, mostColors>
colorsOf(const RenderPipelineDescriptor& descriptor) {
    std::array<ColorAttachmentDescriptor, mostColors> colors;
    for (std::size_t n = 0; n < mostColors; ++n)
        colors[n] = descriptor.colorAt(n);
    return colors;
}

VkResult makeGraphicsPipeline(const DeviceState& device, const GraphicsPipelineNeeds& needs,
                              VkPipeline& pipeline) {
    const VkDevice handle = device.record.handle;
    Stages stages({.loopBudget = device.record.loopBudget, .sampleCount = needs.sampleCount});
    if (!stages.add(handle, VK_SHADER_STAGE_VERTEX_BIT, needs.vertex) ||
        !stages.add(handle, VK_SHADER_STAGE_TESSELLATION_CONTROL_BIT, needs.control) ||
        !stages.add(handle, VK_SHADER_STAGE_TESSELLATION_EVALUATION_BIT, needs.evaluation) ||
        !stages.add(handle, VK_SHADER_STAGE_FRAGMENT_BIT, needs.fragment))
        return VK_ERROR_UNKNOWN;
    const CommonState common;
    const Colors colors(needs);
    const VkPipelineRenderingCreateInfo rendering{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO,
        .colorAttachmentCount = colors.count,
        .pColorAttachmentFormats = colors.formats.data(),
        .depthAttachmentFormat = vulkanFormat(needs.depthFormat)};
    const bool hasPatches = !needs.evaluation.empty();
    const VkPipelineInputAssemblyStateCreateInfo assembly{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO,
        .topology = hasPatches ? VK_PRIMITIVE_TOPOLOGY_PATCH_LIST
                               : topologies[static_cast<std::size_t>(needs.topology)]};
    constexpr VkPipelineTessellationStateCreateInfo patches{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_TESSELLATION_STATE_CREATE_INFO,
        .patchControlPoints = 1};
    const VkPipelineMultisampleStateCreateInfo multisample{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO,
        .rasterizationSamples = static_cast<VkSampleCountFlagBits>(needs.sampleCount)};
    const VkPipelineColorBlendStateCreateInfo blend{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO,
        .attachmentCount = colors.count,
        .pAttachments = colors.states.data()};
    const bool readsTargets = needs.readsColors && device.record.features.readsTargets;
    const VkGraphicsPipelineCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO,
        .pNext = &rendering,
        .flags =
            readsTargets
                ? VkPipelineCreateFlags{VK_PIPELINE_CREATE_COLOR_ATTACHMENT_FEEDBACK_LOOP_BIT_EXT}
                : 0,
        .stageCount = static_cast<std::uint32_t>(stages.infos.size()),
        .pStages = stages.infos.data(),
        .pVertexInputState = needs.vertexInput ? needs.vertexInput : &common.vertexInput,
        .pInputAssemblyState = &assembly,
        .pTessellationState = hasPatches ? &patches : nullptr,
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
