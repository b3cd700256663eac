#include "TarnwickGPU/Commands/ResourceBinding.h"

#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Resources/Samplers.h"
#include "TarnwickGPU/Resources/TextureParts.h"
#include "TarnwickMSL/SamplerBits.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::gpu {

namespace {

// Of both stages of a pipeline. BindingLayout makes no layout with more.
constexpr std::size_t mostDescriptors = mostResources;

// On the stack. Each write points at its record in one of the other arrays.
struct Writes {
    std::array<VkWriteDescriptorSet, mostDescriptors> list;
    std::array<VkDescriptorBufferInfo, mostDescriptors> buffers;
    std::array<VkDescriptorImageInfo, mostDescriptors> images;
    std::array<VkBufferView, mostDescriptors> texels;
    std::uint32_t count = 0;
};

// If setBytes gave fewer bytes than the shader's record has, the rest is zeros.
void lengthen(CommandBufferParts& commands, BoundBuffer& bound, VkDeviceSize size) {
    const BytesRing::Slice slice = commands.ring.take(commands.device->record, size);
    if (!slice.buffer) {
        commands.failed = true;
        return;
    }
    std::memcpy(slice.bytes, bound.bytes, bound.size);
    std::memset(slice.bytes + bound.size, 0, size - bound.size);
    bound = {slice.buffer, slice.offset, size, slice.bytes, slice.bytes, slice.address};
}

// What an argument buffer holds for a member; 0 if the CPU cannot read it.
std::uint64_t numberOf(const ResourceTable& table, const msl::ArgumentMember& member) {
    const BoundBuffer& record = table.buffers[member.buffer];
    std::uint64_t number = 0;
    if (record.contents && std::uint64_t{member.offset} + member.bytes <= record.size)
        std::memcpy(&number, record.contents + member.offset, member.bytes);
    return number;
}

// The addresses of the bound buffers; 0, which programs read as null, where none is bound.
VkDescriptorBufferInfo addressesOf(CommandBufferParts& commands, const ResourceTable& table,
                                   const BoundResource& bound) {
    const VkDeviceSize size = bound.resource.size;
    const BytesRing::Slice slice = commands.ring.take(commands.device->record, size);
    if (!slice.buffer) {
        commands.failed = true;
        return {};
    }
    const auto write = [&](std::size_t index, VkDeviceAddress address) {
        if ((index + 1) * sizeof address <= size)
            std::memcpy(slice.bytes + index * sizeof address, &address, sizeof address);
    };
    for (std::size_t index = 0; index < table.buffers.size(); ++index)
        write(index, table.buffers[index].address);
    for (const msl::ArgumentMember& member : bound.members)
        write(member.index, numberOf(table, member));
    return {slice.buffer, slice.offset, size};
}

// The buffer that a member of an argument buffer points to; none at an address that cannot be
// bound.
BoundBuffer memberBuffer(const DeviceState& device, const ResourceTable& table,
                         const msl::ArgumentMember& member) {
    const auto range = device.residents.bufferAt(numberOf(table, member));
    const VkPhysicalDeviceLimits& limits = device.record.limits;
    if (!range || range->offset % limits.minStorageBufferOffsetAlignment != 0)
        return {};
    return {.buffer = range->buffer, .offset = range->offset, .size = range->size};
}

VkDescriptorBufferInfo bufferInfo(CommandBufferParts& commands, ResourceTable& table,
                                  const BoundResource& bound) {
    const DeviceState& device = *commands.device;
    const VkPhysicalDeviceLimits& limits = device.record.limits;
    const msl::Resource& resource = bound.resource;
    if (bound.own)
        return commands.ownBuffers[*bound.own];
    if (resource.kind == msl::ResourceKind::loopReport)
        return commands.reports.next();
    if (resource.kind == msl::ResourceKind::bufferAddresses)
        return addressesOf(commands, table, bound);
    BoundBuffer held;
    if (!bound.members.empty())
        held = memberBuffer(device, table, bound.members.front());
    BoundBuffer& buffer = bound.members.empty() ? table.buffers[resource.index] : held;
    if (!buffer.buffer)
        return {resource.isWritten ? device.standIns.scratch.buffer : device.standIns.zeros.buffer,
                0, std::min<VkDeviceSize>(standInBytes, limits.maxUniformBufferRange)};
    if (buffer.bytes && buffer.size < resource.size)
        lengthen(commands, buffer, resource.size);
    const VkDeviceSize most = bound.type == VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER
                                  ? limits.maxUniformBufferRange
                                  : limits.maxStorageBufferRange;
    const VkDeviceSize words = (buffer.size + 3) / 4 * 4; // as the buffer has (makeBufferMemory)
    return {buffer.buffer, buffer.offset, std::min(words, most)};
}

VkSampler samplerFor(DeviceState& device, const ResourceTable& table, const BoundResource& bound) {
    const msl::Resource& resource = bound.resource;
    if (!bound.members.empty()) {
        const std::uint64_t number = numberOf(table, bound.members.front());
        const std::uint64_t bits = (number & ~msl::samplerArgumentBit) | resource.samplerState;
        const VkSampler held =
            number & msl::samplerArgumentBit ? device.samplers.sampler(bits) : VK_NULL_HANDLE;
        return held ? held : bound.sampler;
    }
    const SamplerParts* given =
        resource.kind == msl::ResourceKind::sampler ? table.samplers[resource.index] : nullptr;
    if (!given)
        return bound.sampler;
    return resource.samplerState & msl::samplerComparesBit ? given->comparing : given->plain;
}

// Null descriptors read as zero and have size 0.
VkDescriptorImageInfo standInFor(const DeviceRecord& device, const BoundResource& bound) {
    if (device.features.nullDescriptors)
        return {VK_NULL_HANDLE, VK_NULL_HANDLE, VK_IMAGE_LAYOUT_UNDEFINED};
    return {VK_NULL_HANDLE, bound.standIn->views.whole(), bound.standIn->rest};
}

// A target's colour so far; see ColorInputs.h.
VkDescriptorImageInfo colorInput(const CommandBufferParts& commands, const BoundResource& bound) {
    const ColorInput& input = commands.colorInputs[bound.resource.index];
    if (!input.view || input.component != bound.resource.component)
        return standInFor(commands.device->record, bound);
    return {VK_NULL_HANDLE, input.view, input.layout};
}

const TextureParts* textureFor(const DeviceState& device, const ResourceTable& table,
                               const BoundResource& bound) {
    if (bound.members.empty())
        return table.textures[bound.resource.index];
    return device.residents.texture(
        static_cast<std::uint32_t>(numberOf(table, bound.members.front())));
}

VkDescriptorImageInfo imageInfo(CommandBufferParts& commands, const ResourceTable& table,
                                const BoundResource& bound) {
    const DeviceRecord& device = commands.device->record;
    if (bound.sampler)
        return {samplerFor(*commands.device, table, bound), VK_NULL_HANDLE,
                VK_IMAGE_LAYOUT_UNDEFINED};
    if (bound.resource.kind == msl::ResourceKind::colorInput)
        return colorInput(commands, bound);
    const TextureParts* texture = textureFor(*commands.device, table, bound);
    const VkImageView view = texture ? texture->views.forResource(bound.resource) : VK_NULL_HANDLE;
    if (!view)
        return standInFor(device, bound);
    return {VK_NULL_HANDLE, view, texture->rest};
}

VkBufferView texels(const DeviceState& device, const ResourceTable& table,
                    const BoundResource& bound) {
    const TextureParts* texture = textureFor(device, table, bound);
    const VkBufferView view = texture ? texture->texelsFor(bound.resource) : VK_NULL_HANDLE;
    if (view || device.record.features.nullDescriptors)
        return view;
    return bound.standIn->texelsFor(bound.resource);
}

bool isTexels(VkDescriptorType type) {
    return type == VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER ||
           type == VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER;
}

bool isBuffer(VkDescriptorType type) {
    return type == VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER || type == VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
}

void add(CommandBufferParts& commands, Writes& writes, const BoundResource& bound) {
    ResourceTable& table = commands.tables[static_cast<std::size_t>(bound.table)];
    const std::uint32_t at = writes.count++;
    writes.list[at] = {.sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET,
                       .dstBinding = bound.resource.binding,
                       .descriptorCount = 1,
                       .descriptorType = bound.type};
    if (isBuffer(bound.type)) {
        writes.buffers[at] = bufferInfo(commands, table, bound);
        writes.list[at].pBufferInfo = &writes.buffers[at];
    } else if (isTexels(bound.type)) {
        writes.texels[at] = texels(*commands.device, table, bound);
        writes.list[at].pTexelBufferView = &writes.texels[at];
    } else {
        writes.images[at] = imageInfo(commands, table, bound);
        writes.list[at].pImageInfo = &writes.images[at];
    }
}

void bindWithSet(CommandBufferParts& commands, const BindingLayout& layout,
                 VkPipelineBindPoint point, Writes& writes) {
    const VkDescriptorSet set = commands.sets.take(commands.device->record, layout.setLayout);
    if (!set) {
        commands.failed = true;
        return;
    }
    for (std::uint32_t at = 0; at < writes.count; ++at)
        writes.list[at].dstSet = set;
    vkUpdateDescriptorSets(commands.device->record.handle, writes.count, writes.list.data(), 0,
                           nullptr);
    vkCmdBindDescriptorSets(commands.handle, point, layout.pipelineLayout, 0, 1, &set, 0, nullptr);
}

} // namespace

void bindResources(CommandBufferParts& commands, const BindingLayout& layout,
                   VkPipelineBindPoint point) {
    Writes writes; // not cleared: the first `count` of each array are filled
    for (const BoundResource& bound : layout.resources)
        add(commands, writes, bound);
    if (!layout.pushesDescriptors)
        bindWithSet(commands, layout, point, writes);
    else if (writes.count > 0)
        commands.device->record.pushDescriptorSet(commands.handle, point, layout.pipelineLayout, 0,
                                                  writes.count, writes.list.data());
}

} // namespace tarnwick::gpu
