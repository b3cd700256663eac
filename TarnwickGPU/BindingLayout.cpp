#include "TarnwickGPU/BindingLayout.h"

#include "TarnwickGPU/DeviceState.h"
#include "TarnwickMSL/SamplerBits.h"

#include <algorithm>
#include <array>

namespace tarnwick::gpu {

namespace {

VkDescriptorType descriptorType(msl::ResourceKind kind) {
    switch (kind) {
    case msl::ResourceKind::uniformBuffer:
        return VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    case msl::ResourceKind::storageBuffer:
    case msl::ResourceKind::loopReport:
        return VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
    case msl::ResourceKind::sampledTexture:
        return VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE;
    case msl::ResourceKind::storageTexture:
        return VK_DESCRIPTOR_TYPE_STORAGE_IMAGE;
    case msl::ResourceKind::sampler:
    case msl::ResourceKind::constantSampler:
        break;
    }
    return VK_DESCRIPTOR_TYPE_SAMPLER;
}

VkShaderStageFlags stageFlags(msl::Stage stage) {
    switch (stage) {
    case msl::Stage::vertex:
        return VK_SHADER_STAGE_VERTEX_BIT;
    case msl::Stage::fragment:
        return VK_SHADER_STAGE_FRAGMENT_BIT;
    case msl::Stage::kernel:
        break;
    }
    return VK_SHADER_STAGE_COMPUTE_BIT;
}

struct Limit {
    VkDescriptorType type;
    std::uint32_t VkPhysicalDeviceLimits::*most;
};

constexpr std::array limitsPerStage{
    Limit{VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER,
          &VkPhysicalDeviceLimits::maxPerStageDescriptorUniformBuffers},
    Limit{VK_DESCRIPTOR_TYPE_STORAGE_BUFFER,
          &VkPhysicalDeviceLimits::maxPerStageDescriptorStorageBuffers},
    Limit{VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE,
          &VkPhysicalDeviceLimits::maxPerStageDescriptorSampledImages},
    Limit{VK_DESCRIPTOR_TYPE_STORAGE_IMAGE,
          &VkPhysicalDeviceLimits::maxPerStageDescriptorStorageImages},
    Limit{VK_DESCRIPTOR_TYPE_SAMPLER, &VkPhysicalDeviceLimits::maxPerStageDescriptorSamplers}};

// The packaged CPU driver shows a stage 15 uniform buffers, far fewer than Metal's 31.
bool isWithinLimits(const DeviceState& device, const msl::EntryPoint& function) {
    return std::all_of(limitsPerStage.begin(), limitsPerStage.end(), [&](const Limit& limit) {
        const auto count =
            std::count_if(function.resources.begin(), function.resources.end(),
                          [&](const auto& one) { return descriptorType(one.kind) == limit.type; });
        return static_cast<std::uint64_t>(count) <= device.limits.*limit.most;
    });
}

bool makeSetLayout(DeviceState& device, BindingLayout& layout,
                   std::span<const msl::EntryPoint* const> functions) {
    std::vector<VkDescriptorSetLayoutBinding> bindings;
    for (const msl::EntryPoint* function : functions)
        for (const msl::Resource& resource : function->resources)
            bindings.push_back({.binding = resource.binding,
                                .descriptorType = descriptorType(resource.kind),
                                .descriptorCount = 1,
                                .stageFlags = stageFlags(function->stage)});
    layout.pushesDescriptors =
        device.pushDescriptorSet && bindings.size() <= device.features.maxPushDescriptors;
    const VkDescriptorSetLayoutCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO,
        .flags =
            layout.pushesDescriptors
                ? VkDescriptorSetLayoutCreateFlags{VK_DESCRIPTOR_SET_LAYOUT_CREATE_PUSH_DESCRIPTOR_BIT_KHR}
                : 0,
        .bindingCount = static_cast<std::uint32_t>(bindings.size()),
        .pBindings = bindings.data()};
    return vkCreateDescriptorSetLayout(device.handle, &info, nullptr, &layout.setLayout) ==
           VK_SUCCESS;
}

bool makePipelineLayout(DeviceState& device, BindingLayout& layout, bool isKernel) {
    const VkPushConstantRange gridSize{.stageFlags = VK_SHADER_STAGE_COMPUTE_BIT,
                                       .size = msl::kernelPushConstantBytes};
    const VkPipelineLayoutCreateInfo info{.sType = VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO,
                                          .setLayoutCount = 1,
                                          .pSetLayouts = &layout.setLayout,
                                          .pushConstantRangeCount = isKernel ? 1u : 0u,
                                          .pPushConstantRanges = &gridSize};
    return vkCreatePipelineLayout(device.handle, &info, nullptr, &layout.pipelineLayout) ==
           VK_SUCCESS;
}

std::uint64_t samplerBits(const msl::Resource& resource) {
    return resource.kind == msl::ResourceKind::sampler ? msl::samplerArgumentBit
                                                       : resource.samplerState;
}

bool listResources(DeviceState& device, BindingLayout& layout, const msl::EntryPoint& function) {
    const TableIndex table =
        function.stage == msl::Stage::fragment ? TableIndex::fragment : TableIndex::vertexOrKernel;
    for (const msl::Resource& resource : function.resources) {
        BoundResource bound{resource, table, descriptorType(resource.kind)};
        const bool isSampler = bound.type == VK_DESCRIPTOR_TYPE_SAMPLER;
        if (isSampler)
            bound.sampler = device.samplers.sampler(device, samplerBits(resource));
        if (isSampler && !bound.sampler)
            return false;
        const bool isReport = resource.kind == msl::ResourceKind::loopReport;
        layout.reportsLoops |= isReport;
        layout.writesMemory |= resource.isWritten && !isReport;
        layout.resources.push_back(bound);
    }
    return true;
}

} // namespace

std::optional<BindingLayout>
BindingLayout::make(DeviceState& device, std::span<const msl::EntryPoint* const> functions) {
    BindingLayout layout;
    const bool isKernel = functions.front()->stage == msl::Stage::kernel;
    bool isMade = std::all_of(functions.begin(), functions.end(), [&](const auto* function) {
        return isWithinLimits(device, *function);
    });
    isMade = isMade && makeSetLayout(device, layout, functions) &&
             makePipelineLayout(device, layout, isKernel);
    for (const msl::EntryPoint* function : functions)
        isMade = isMade && listResources(device, layout, *function);
    if (isMade && layout.resources.size() <= mostResources)
        return layout;
    layout.bury(device);
    return std::nullopt;
}

void BindingLayout::bury(DeviceState& device) {
    device.bury(pipelineLayout, setLayout);
    pipelineLayout = VK_NULL_HANDLE;
    setLayout = VK_NULL_HANDLE;
}

} // namespace tarnwick::gpu
