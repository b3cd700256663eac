#include "TarnwickGPU/Device/BindingLayout.h"

#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Vulkan/Stages.h"
#include "TarnwickMSL/SamplerBits.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace tarnwick::gpu {

namespace {

VkDescriptorType descriptorType(msl::ResourceKind kind) {
    switch (kind) {
    case msl::ResourceKind::uniformBuffer:
    case msl::ResourceKind::bufferAddresses:
    case msl::ResourceKind::gridSize:     // of WGSL, which no device takes
    case msl::ResourceKind::viewportSize: // the same
        return VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    case msl::ResourceKind::storageBuffer:
    case msl::ResourceKind::loopReport:
        return VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
    case msl::ResourceKind::sampledTexture:
    case msl::ResourceKind::colorInput:
        return VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE;
    case msl::ResourceKind::storageTexture:
        return VK_DESCRIPTOR_TYPE_STORAGE_IMAGE;
    case msl::ResourceKind::accelerationStructure: // of modules that no device takes (Capabilities)
        return VK_DESCRIPTOR_TYPE_ACCELERATION_STRUCTURE_KHR;
    case msl::ResourceKind::sampler:
    case msl::ResourceKind::constantSampler:
        break;
    }
    return VK_DESCRIPTOR_TYPE_SAMPLER;
}

// Vulkan's limits count texel buffers as images.
VkDescriptorType descriptorType(const msl::Resource& resource) {
    const VkDescriptorType type = descriptorType(resource.kind);
    if (resource.shape != msl::TextureShape::buffer)
        return type;
    return type == VK_DESCRIPTOR_TYPE_STORAGE_IMAGE ? VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER
                                                    : VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER;
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

std::size_t countOf(VkDescriptorType type, std::span<const msl::EntryPoint* const> functions) {
    std::size_t count = 0;
    for (const msl::EntryPoint* function : functions)
        count += static_cast<std::size_t>(
            std::count_if(function->resources.begin(), function->resources.end(),
                          [&](const auto& one) { return descriptorType(one.kind) == type; }));
    return count;
}

// The packaged CPU driver has 15 uniform buffers per stage, Metal 31.
bool isWithinLimits(const DeviceRecord& device,
                    std::span<const msl::EntryPoint* const> functionsOfAStage,
                    std::size_t ownBuffers) {
    return std::all_of(limitsPerStage.begin(), limitsPerStage.end(), [&](const Limit& limit) {
        const std::size_t own = limit.type == VK_DESCRIPTOR_TYPE_STORAGE_BUFFER ? ownBuffers : 0;
        return countOf(limit.type, functionsOfAStage) + own <= device.limits.*limit.most;
    });
}

bool isWithinLimits(const DeviceRecord& device, const BindingNeeds& needs) {
    if (needs.stages != 0)
        return isWithinLimits(device, needs.functions, needs.ownBuffers);
    for (std::size_t at = 0; at < needs.functions.size(); ++at)
        if (!isWithinLimits(device, needs.functions.subspan(at, 1), 0))
            return false;
    return true;
}

bool makeSetLayout(const DeviceRecord& device, BindingLayout& layout, const BindingNeeds& needs) {
    std::vector<VkDescriptorSetLayoutBinding> bindings;
    for (const msl::EntryPoint* function : needs.functions)
        for (const msl::Resource& resource : function->resources)
            bindings.push_back({.binding = resource.binding,
                                .descriptorType = descriptorType(resource),
                                .descriptorCount = 1,
                                .stageFlags = needs.stages ? needs.stages : stageFlags(*function)});
    for (std::size_t own = 0; own < needs.ownBuffers; ++own)
        bindings.push_back(
            {.binding = ownBinding(needs.functions) + static_cast<std::uint32_t>(own),
             .descriptorType = VK_DESCRIPTOR_TYPE_STORAGE_BUFFER,
             .descriptorCount = 1,
             .stageFlags = needs.stages});
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

bool makePipelineLayout(const DeviceRecord& device, BindingLayout& layout,
                        const VkPushConstantRange& pushConstants) {
    const VkPipelineLayoutCreateInfo info{.sType = VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO,
                                          .setLayoutCount = 1,
                                          .pSetLayouts = &layout.setLayout,
                                          .pushConstantRangeCount = pushConstants.size ? 1u : 0u,
                                          .pPushConstantRanges = &pushConstants};
    return vkCreatePipelineLayout(device.handle, &info, nullptr, &layout.pipelineLayout) ==
           VK_SUCCESS;
}

// For a sampler argument: the bits of the sampler that is used if none is bound.
std::uint64_t samplerBits(const msl::Resource& resource) {
    return resource.kind == msl::ResourceKind::sampler
               ? msl::samplerArgumentBit | resource.samplerState
               : resource.samplerState;
}

bool isTexture(const msl::Resource& resource) {
    return resource.kind == msl::ResourceKind::sampledTexture ||
           resource.kind == msl::ResourceKind::storageTexture ||
           resource.kind == msl::ResourceKind::colorInput;
}

// An index beyond those of arguments is a member's.
bool isMember(const msl::Resource& resource, const msl::ArgumentMember& member) {
    switch (resource.kind) {
    case msl::ResourceKind::uniformBuffer:
    case msl::ResourceKind::storageBuffer:
        return member.kind == msl::MemberKind::buffer && member.index == resource.index;
    case msl::ResourceKind::sampledTexture:
    case msl::ResourceKind::storageTexture:
        return member.kind == msl::MemberKind::texture && member.index == resource.index;
    case msl::ResourceKind::sampler:
        return member.kind == msl::MemberKind::sampler && member.index == resource.index;
    case msl::ResourceKind::bufferAddresses:
        return member.kind == msl::MemberKind::buffer;
    case msl::ResourceKind::constantSampler:
    case msl::ResourceKind::colorInput:
    case msl::ResourceKind::accelerationStructure:
    case msl::ResourceKind::loopReport:
    case msl::ResourceKind::gridSize:
    case msl::ResourceKind::viewportSize:
        break;
    }
    return false;
}

bool listResources(DeviceState& device, BindingLayout& layout, const msl::EntryPoint& function) {
    const TableIndex table =
        function.stage == msl::Stage::fragment ? TableIndex::fragment : TableIndex::vertexOrKernel;
    layout.writesMemory |= function.storesByAddress;
    for (const msl::Resource& resource : function.resources) {
        BoundResource bound{resource, table, descriptorType(resource)};
        std::ranges::copy_if(
            function.members, std::back_inserter(bound.members),
            [&](const msl::ArgumentMember& member) { return isMember(resource, member); });
        const bool isSampler = bound.type == VK_DESCRIPTOR_TYPE_SAMPLER;
        if (isSampler)
            bound.sampler = device.samplers.sampler(samplerBits(resource));
        const bool needsStandIn = isTexture(resource) && !device.record.features.nullDescriptors;
        if (needsStandIn)
            bound.standIn = device.standIns.texture(resource);
        if ((isSampler && !bound.sampler) || (needsStandIn && !bound.standIn))
            return false;
        const bool isReport = resource.kind == msl::ResourceKind::loopReport;
        layout.reportsLoops |= isReport;
        if (resource.kind == msl::ResourceKind::colorInput)
            layout.colorInputs |= 1u << resource.index;
        layout.writesMemory |= resource.isWritten && !isReport;
        layout.resources.push_back(std::move(bound));
    }
    return true;
}

} // namespace

std::uint32_t ownBinding(std::span<const msl::EntryPoint* const> functions) {
    std::uint32_t free = 0;
    for (const msl::EntryPoint* function : functions)
        for (const msl::Resource& resource : function->resources)
            free = std::max(free, resource.binding + 1);
    return free;
}

std::optional<BindingLayout> BindingLayout::make(DeviceState& device, const BindingNeeds& needs) {
    BindingLayout layout;
    bool isMade = isWithinLimits(device.record, needs) &&
                  makeSetLayout(device.record, layout, needs) &&
                  makePipelineLayout(device.record, layout, needs.pushConstants);
    for (const msl::EntryPoint* function : needs.functions)
        isMade = isMade && listResources(device, layout, *function);
    for (std::size_t own = 0; own < needs.ownBuffers; ++own) {
        const std::uint32_t binding = ownBinding(needs.functions) + static_cast<std::uint32_t>(own);
        layout.resources.push_back({.resource = {.binding = binding},
                                    .type = VK_DESCRIPTOR_TYPE_STORAGE_BUFFER,
                                    .own = own});
    }
    if (isMade && layout.resources.size() <= mostResources)
        return layout;
    layout.bury(device.graveyard);
    return std::nullopt;
}

void BindingLayout::bury(Graveyard& graveyard) {
    graveyard.bury(pipelineLayout, setLayout);
    pipelineLayout = VK_NULL_HANDLE;
    setLayout = VK_NULL_HANDLE;
}

void PipelineWithLayout::bury(Graveyard& graveyard) {
    graveyard.bury(pipeline);
    pipeline = VK_NULL_HANDLE;
    layout.bury(graveyard);
}

} // namespace tarnwick::gpu
