#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/PipelineParts.h"
#include "TarnwickGPU/VulkanFormat.h"

#include <array>

namespace tarnwick::gpu {

namespace {

// In the enumerations' orders.
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

// A fragment function that gives no colour leaves the target as it is.
VkPipelineColorBlendAttachmentState blending(const ColorAttachmentDescriptor& color,
                                             const Function* fragment) {
    constexpr VkColorComponentFlags all = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT |
                                          VK_COLOR_COMPONENT_B_BIT | VK_COLOR_COMPONENT_A_BIT;
    const bool isGiven = fragment && (fragment->entryPoint().colorAttachments & 1) != 0;
    return {.blendEnable = color.blends,
            .srcColorBlendFactor = vulkan(color.sourceRGB),
            .dstColorBlendFactor = vulkan(color.destinationRGB),
            .colorBlendOp = vulkan(color.rgbOperation),
            .srcAlphaBlendFactor = vulkan(color.sourceAlpha),
            .dstAlphaBlendFactor = vulkan(color.destinationAlpha),
            .alphaBlendOp = vulkan(color.alphaOperation),
            .colorWriteMask = isGiven ? all : 0};
}

constexpr std::array dynamicStates{
    VK_DYNAMIC_STATE_VIEWPORT,           VK_DYNAMIC_STATE_SCISSOR,
    VK_DYNAMIC_STATE_PRIMITIVE_TOPOLOGY, VK_DYNAMIC_STATE_DEPTH_TEST_ENABLE,
    VK_DYNAMIC_STATE_DEPTH_WRITE_ENABLE, VK_DYNAMIC_STATE_DEPTH_COMPARE_OP};

// What every pipeline of the layer has in common: no vertex buffers, nothing culled, and states
// that the encoder sets.
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

VkResult makePipeline(RenderPipelineParts& parts, const RenderPipelineDescriptor& descriptor,
                      const Stages& stages) {
    const CommonState common;
    const VkFormat colorFormat = vulkanFormat(descriptor.color.format);
    const std::uint32_t colors = colorFormat == VK_FORMAT_UNDEFINED ? 0 : 1;
    const VkPipelineRenderingCreateInfo rendering{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO,
        .colorAttachmentCount = colors,
        .pColorAttachmentFormats = &colorFormat,
        .depthAttachmentFormat = vulkanFormat(descriptor.depthFormat)};
    const VkPipelineInputAssemblyStateCreateInfo assembly{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO,
        .topology = topologies[static_cast<std::size_t>(descriptor.topology)]};
    const VkPipelineMultisampleStateCreateInfo multisample{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO,
        .rasterizationSamples = static_cast<VkSampleCountFlagBits>(descriptor.sampleCount)};
    const VkPipelineColorBlendAttachmentState attachment =
        blending(descriptor.color, descriptor.fragment);
    const VkPipelineColorBlendStateCreateInfo blend{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO,
        .attachmentCount = colors,
        .pAttachments = &attachment};
    const VkGraphicsPipelineCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO,
        .pNext = &rendering,
        .stageCount = static_cast<std::uint32_t>(stages.infos.size()),
        .pStages = stages.infos.data(),
        .pVertexInputState = &common.vertexInput,
        .pInputAssemblyState = &assembly,
        .pViewportState = &common.viewport,
        .pRasterizationState = &common.rasterization,
        .pMultisampleState = &multisample,
        .pDepthStencilState = &common.depthStencil,
        .pColorBlendState = &blend,
        .pDynamicState = &common.dynamic,
        .layout = parts.layout.pipelineLayout};
    return vkCreateGraphicsPipelines(parts.device->handle, parts.device->pipelineCache.handle(), 1,
                                     &info, nullptr, &parts.pipeline);
}

std::string subject(const RenderPipelineDescriptor& descriptor) {
    return "the render pipeline of " + descriptor.vertex->name() + " and " +
           descriptor.fragment->name();
}

} // namespace

RenderPipelineParts::~RenderPipelineParts() {
    device->bury(pipeline);
    layout.bury(*device);
}

RenderPipelineState::RenderPipelineState(std::unique_ptr<RenderPipelineParts> parts)
    : parts_(std::move(parts)) {}
RenderPipelineState::~RenderPipelineState() = default;

std::unique_ptr<RenderPipelineState>
Device::newRenderPipelineState(const RenderPipelineDescriptor& descriptor) {
    precondition(descriptor.vertex && descriptor.fragment, "A render pipeline has two functions.");
    precondition(descriptor.vertex->stage() == msl::Stage::vertex &&
                     descriptor.fragment->stage() == msl::Stage::fragment,
                 "A render pipeline is a vertex and a fragment function.");
    if (isLost())
        throw DeviceError(refusal(*state_, subject(descriptor), VK_ERROR_DEVICE_LOST));
    auto parts = std::make_unique<RenderPipelineParts>();
    parts->device = state_;
    parts->colorFormat = descriptor.color.format;
    parts->depthFormat = descriptor.depthFormat;
    parts->sampleCount = descriptor.sampleCount;
    parts->topology = descriptor.topology;
    const std::array functions{&descriptor.vertex->entryPoint(),
                               &descriptor.fragment->entryPoint()};
    for (const msl::EntryPoint* function : functions)
        checkNeeds(*state_, subject(descriptor), *function);
    auto layout = BindingLayout::make(*state_, functions);
    const ShaderModule vertex(state_->handle, *functions[0]);
    const ShaderModule fragment(state_->handle, *functions[1]);
    if (!layout || !vertex.handle() || !fragment.handle())
        throw DeviceError(refusal(*state_, subject(descriptor), VK_ERROR_UNKNOWN));
    parts->layout = std::move(*layout);
    const Stages stages(vertex.handle(), fragment.handle(), state_->loopBudget);
    if (const VkResult result = makePipeline(*parts, descriptor, stages); result != VK_SUCCESS)
        throw DeviceError(refusal(*state_, subject(descriptor), result));
    return std::make_unique<RenderPipelineState>(std::move(parts));
}

std::unique_ptr<DepthStencilState>
Device::newDepthStencilState(const DepthStencilDescriptor& descriptor) {
    return std::make_unique<DepthStencilState>(descriptor);
}

} // namespace tarnwick::gpu
