#include "TarnwickGPU/Commands/ResourceBinding.h"

#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Resources/Samplers.h"
#include "TarnwickGPU/Resources/TextureParts.h"
#include "TarnwickMSL/SamplerBits.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::gpu {

namespace {

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

DescriptorWrite writeFor(CommandBufferParts& commands, const BoundResource& bound) {
    ResourceTable& table = commands.tables[static_cast<std::size_t>(bound.table)];
    DescriptorWrite write{.binding = bound.resource.binding, .type = bound.type};
    if (isBuffer(bound.type))
        write.buffer = bufferInfo(commands, table, bound);
    else if (isTexels(bound.type))
        write.texels = texels(*commands.device, table, bound);
    else
        write.image = imageInfo(commands, table, bound);
    return write;
}

void bindWithSet(CommandBufferParts& commands, const BindingLayout& layout,
                 VkPipelineBindPoint point) {
    const VkDescriptorSet set = commands.sets.take(commands.device->record, layout.setLayout);
    if (!set) {
        commands.failed = true;
        return;
    }
    std::array<DescriptorWrite, mostResources> writes; // BindingLayout makes no layout with more
    std::array<VkWriteDescriptorSet, mostResources> list;
    std::uint32_t count = 0;
    for (const BoundResource& bound : layout.resources) {
        writes[count] = writeFor(commands, bound);
        list[count] = vulkanWrite(writes[count]);
        list[count++].dstSet = set;
    }
    vkUpdateDescriptorSets(commands.device->record.handle, count, list.data(), 0, nullptr);
    commands.stream->add(command::BindDescriptors{point, layout.pipelineLayout, set});
}

} // namespace

void bindResources(CommandBufferParts& commands, const BindingLayout& layout,
                   VkPipelineBindPoint point) {
    if (!layout.pushesDescriptors)
        return bindWithSet(commands, layout, point);
    std::vector<DescriptorWrite>& writes = commands.stream->writes;
    const std::size_t first = writes.size();
    for (const BoundResource& bound : layout.resources)
        writes.push_back(writeFor(commands, bound));
    if (writes.size() > first)
        commands.stream->pushDescriptors(point, layout.pipelineLayout, first);
}

} // namespace tarnwick::gpu
