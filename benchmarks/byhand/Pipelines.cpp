#include "benchmarks/byhand/Pipelines.h"

#include <fstream>
#include <iterator>

namespace tarnwick::bench {

namespace {

std::string text(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The stages and accesses of an image in a layout.
struct Use {
    VkPipelineStageFlags2 stages;
    VkAccessFlags2 access;
};

Use useOf(VkImageLayout layout) {
    switch (layout) {
    case VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL:
        return {VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT,
                VK_ACCESS_2_COLOR_ATTACHMENT_READ_BIT | VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT};
    case VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL:
        return {VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT |
                    VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT,
                VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT |
                    VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT};
    case VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL:
        return {VK_PIPELINE_STAGE_2_FRAGMENT_SHADER_BIT, VK_ACCESS_2_SHADER_SAMPLED_READ_BIT};
    case VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL:
        return {VK_PIPELINE_STAGE_2_COPY_BIT, VK_ACCESS_2_TRANSFER_READ_BIT};
    default: // any earlier use
        return {VK_PIPELINE_STAGE_2_FRAGMENT_SHADER_BIT |
                    VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT |
                    VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT,
                VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT |
                    VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT};
    }
}

VkPipelineColorBlendAttachmentState blending(bool adds) {
    return {.blendEnable = adds,
            .srcColorBlendFactor = VK_BLEND_FACTOR_ONE,
            .dstColorBlendFactor = VK_BLEND_FACTOR_ONE,
            .colorBlendOp = VK_BLEND_OP_ADD,
            .srcAlphaBlendFactor = VK_BLEND_FACTOR_ONE,
            .dstAlphaBlendFactor = VK_BLEND_FACTOR_ONE,
            .alphaBlendOp = VK_BLEND_OP_ADD,
            .colorWriteMask = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT |
                              VK_COLOR_COMPONENT_B_BIT | VK_COLOR_COMPONENT_A_BIT};
}

VkPipelineShaderStageCreateInfo stage(VkShaderStageFlagBits bit, VkShaderModule module) {
    return {.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
            .stage = bit,
            .module = module,
            .pName = "main"};
}

} // namespace

HandPipelines::HandPipelines(Machine& machine, const std::filesystem::path& scene, VkFilter filter)
    : machine_(machine), text_(text(scene.parent_path() / "common.glsl") + text(scene)) {
    makeLayout(filter);
}

void HandPipelines::makeLayout(VkFilter filter) {
    const VkDevice device = machine_.device();
    const VkSamplerCreateInfo sampler{.sType = VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO,
                                      .magFilter = filter,
                                      .minFilter = filter,
                                      .addressModeU = VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE,
                                      .addressModeV = VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE,
                                      .addressModeW = VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE};
    need(vkCreateSampler(device, &sampler, nullptr, &sampler_), "a sampler");
    machine_.atEnd([device, this_ = sampler_] { vkDestroySampler(device, this_, nullptr); });

    const std::array<VkDescriptorSetLayoutBinding, 2> bindings{
        {{0, VK_DESCRIPTOR_TYPE_STORAGE_BUFFER, 1,
          VK_SHADER_STAGE_COMPUTE_BIT | VK_SHADER_STAGE_VERTEX_BIT, nullptr},
         {1, VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER, 1, VK_SHADER_STAGE_FRAGMENT_BIT, nullptr}}};
    const VkDescriptorSetLayoutCreateInfo set{
        .sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO,
        .bindingCount = bindings.size(),
        .pBindings = bindings.data()};
    need(vkCreateDescriptorSetLayout(device, &set, nullptr, &setLayout_), "a set's layout");
    machine_.atEnd(
        [device, this_ = setLayout_] { vkDestroyDescriptorSetLayout(device, this_, nullptr); });

    const VkPushConstantRange range{VK_SHADER_STAGE_ALL, 0, sizeof(HandFrame)};
    const VkPipelineLayoutCreateInfo layout{.sType = VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO,
                                            .setLayoutCount = 1,
                                            .pSetLayouts = &setLayout_,
                                            .pushConstantRangeCount = 1,
                                            .pPushConstantRanges = &range};
    need(vkCreatePipelineLayout(device, &layout, nullptr, &layout_), "a pipeline's layout");
    machine_.atEnd([device, this_ = layout_] { vkDestroyPipelineLayout(device, this_, nullptr); });

    const std::array<VkDescriptorPoolSize, 2> sizes{
        {{VK_DESCRIPTOR_TYPE_STORAGE_BUFFER, 2}, {VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER, 2}}};
    const VkDescriptorPoolCreateInfo pool{.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO,
                                          .maxSets = 2,
                                          .poolSizeCount = sizes.size(),
                                          .pPoolSizes = sizes.data()};
    need(vkCreateDescriptorPool(device, &pool, nullptr, &pool_), "a descriptor pool");
    machine_.atEnd([device, this_ = pool_] { vkDestroyDescriptorPool(device, this_, nullptr); });
}

VkShaderModule HandPipelines::module(const char* section, TwinStage kind) {
    const std::vector<std::uint32_t> words = compiledGLSL(text_, kind, section);
    const VkShaderModuleCreateInfo info{.sType = VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO,
                                        .codeSize = words.size() * sizeof(std::uint32_t),
                                        .pCode = words.data()};
    VkShaderModule module = VK_NULL_HANDLE;
    need(vkCreateShaderModule(machine_.device(), &info, nullptr, &module), "a shader module");
    machine_.atEnd(
        [device = machine_.device(), module] { vkDestroyShaderModule(device, module, nullptr); });
    return module;
}

VkPipeline HandPipelines::compute(const char* section) {
    const VkComputePipelineCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_COMPUTE_PIPELINE_CREATE_INFO,
        .stage = stage(VK_SHADER_STAGE_COMPUTE_BIT, module(section, TwinStage::compute)),
        .layout = layout_};
    VkPipeline pipeline = VK_NULL_HANDLE;
    need(vkCreateComputePipelines(machine_.device(), VK_NULL_HANDLE, 1, &info, nullptr, &pipeline),
         "a compute pipeline");
    machine_.atEnd(
        [device = machine_.device(), pipeline] { vkDestroyPipeline(device, pipeline, nullptr); });
    return pipeline;
}

VkPipeline HandPipelines::graphics(const HandGraphics& wanted) {
    const std::array stages{
        stage(VK_SHADER_STAGE_VERTEX_BIT, module(wanted.vertex, TwinStage::vertex)),
        stage(VK_SHADER_STAGE_FRAGMENT_BIT, module(wanted.fragment, TwinStage::fragment))};
    const VkPipelineRenderingCreateInfo targets{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO,
        .colorAttachmentCount = 1,
        .pColorAttachmentFormats = &wanted.color,
        .depthAttachmentFormat = wanted.depth};
    const VkPipelineVertexInputStateCreateInfo noVertices{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO};
    const VkPipelineInputAssemblyStateCreateInfo assembly{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO,
        .topology = wanted.topology};
    const VkPipelineViewportStateCreateInfo viewport{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO,
        .viewportCount = 1,
        .scissorCount = 1};
    const VkPipelineRasterizationStateCreateInfo raster{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO, .lineWidth = 1};
    const VkPipelineMultisampleStateCreateInfo samples{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO,
        .rasterizationSamples = wanted.samples};
    const VkPipelineDepthStencilStateCreateInfo depth{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO,
        .depthTestEnable = wanted.testsDepth,
        .depthWriteEnable = wanted.testsDepth,
        .depthCompareOp = VK_COMPARE_OP_LESS};
    const VkPipelineColorBlendAttachmentState blend = blending(wanted.adds);
    const VkPipelineColorBlendStateCreateInfo blends{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO,
        .attachmentCount = 1,
        .pAttachments = &blend};
    const std::array dynamicStates{VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR};
    const VkPipelineDynamicStateCreateInfo dynamic{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO,
        .dynamicStateCount = dynamicStates.size(),
        .pDynamicStates = dynamicStates.data()};
    const VkGraphicsPipelineCreateInfo info{.sType =
                                                VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO,
                                            .pNext = &targets,
                                            .stageCount = stages.size(),
                                            .pStages = stages.data(),
                                            .pVertexInputState = &noVertices,
                                            .pInputAssemblyState = &assembly,
                                            .pViewportState = &viewport,
                                            .pRasterizationState = &raster,
                                            .pMultisampleState = &samples,
                                            .pDepthStencilState = &depth,
                                            .pColorBlendState = &blends,
                                            .pDynamicState = &dynamic,
                                            .layout = layout_};
    VkPipeline pipeline = VK_NULL_HANDLE;
    need(vkCreateGraphicsPipelines(machine_.device(), VK_NULL_HANDLE, 1, &info, nullptr, &pipeline),
         "a graphics pipeline");
    machine_.atEnd(
        [device = machine_.device(), pipeline] { vkDestroyPipeline(device, pipeline, nullptr); });
    return pipeline;
}

VkDescriptorSet HandPipelines::bindings(const HandBuffer* particles, const HandImage& picture) {
    const VkDescriptorSetAllocateInfo info{.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO,
                                           .descriptorPool = pool_,
                                           .descriptorSetCount = 1,
                                           .pSetLayouts = &setLayout_};
    VkDescriptorSet set = VK_NULL_HANDLE;
    need(vkAllocateDescriptorSets(machine_.device(), &info, &set), "a descriptor set");
    const VkDescriptorImageInfo image{sampler_, picture.view,
                                      VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL};
    const VkDescriptorBufferInfo buffer{particles ? particles->handle : VK_NULL_HANDLE, 0,
                                        VK_WHOLE_SIZE};
    const std::array<VkWriteDescriptorSet, 2> writes{
        {{.sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET,
          .dstSet = set,
          .dstBinding = 1,
          .descriptorCount = 1,
          .descriptorType = VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER,
          .pImageInfo = &image},
         {.sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET,
          .dstSet = set,
          .dstBinding = 0,
          .descriptorCount = 1,
          .descriptorType = VK_DESCRIPTOR_TYPE_STORAGE_BUFFER,
          .pBufferInfo = &buffer}}};
    vkUpdateDescriptorSets(machine_.device(), particles ? 2 : 1, writes.data(), 0, nullptr);
    return set;
}

void HandPipelines::bind(VkCommandBuffer commands, VkDescriptorSet bindings, const HandFrame& frame,
                         VkPipelineBindPoint point) const {
    vkCmdBindDescriptorSets(commands, point, layout_, 0, 1, &bindings, 0, nullptr);
    vkCmdPushConstants(commands, layout_, VK_SHADER_STAGE_ALL, 0, sizeof frame, &frame);
}

VkImageMemoryBarrier2 handTransition(const HandImage& image, VkImageLayout from, VkImageLayout to) {
    const VkImageAspectFlags aspect = to == VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL
                                          ? VK_IMAGE_ASPECT_DEPTH_BIT
                                          : VK_IMAGE_ASPECT_COLOR_BIT;
    return {.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
            .srcStageMask = useOf(from).stages,
            .srcAccessMask = useOf(from).access,
            .dstStageMask = useOf(to).stages,
            .dstAccessMask = useOf(to).access,
            .oldLayout = from,
            .newLayout = to,
            .srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
            .dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
            .image = image.handle,
            .subresourceRange = {aspect, 0, 1, 0, 1}};
}

void handBarrier(VkCommandBuffer commands, std::initializer_list<VkImageMemoryBarrier2> images,
                 const VkMemoryBarrier2* memory) {
    const VkDependencyInfo info{.sType = VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
                                .memoryBarrierCount = memory ? 1u : 0u,
                                .pMemoryBarriers = memory,
                                .imageMemoryBarrierCount =
                                    static_cast<std::uint32_t>(images.size()),
                                .pImageMemoryBarriers = images.begin()};
    vkCmdPipelineBarrier2(commands, &info);
}

void handPass(VkCommandBuffer commands, VkExtent2D extent, const VkRenderingAttachmentInfo& color,
              const VkRenderingAttachmentInfo* depth) {
    const VkRenderingInfo info{.sType = VK_STRUCTURE_TYPE_RENDERING_INFO,
                               .renderArea = {{0, 0}, extent},
                               .layerCount = 1,
                               .colorAttachmentCount = 1,
                               .pColorAttachments = &color,
                               .pDepthAttachment = depth};
    vkCmdBeginRendering(commands, &info);
    const VkViewport viewport{
        0, 0, static_cast<float>(extent.width), static_cast<float>(extent.height), 0, 1};
    vkCmdSetViewport(commands, 0, 1, &viewport);
    const VkRect2D scissor{{0, 0}, extent};
    vkCmdSetScissor(commands, 0, 1, &scissor);
}

} // namespace tarnwick::bench
