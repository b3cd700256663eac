#include "TarnwickGPU/Commands/CommandStream.h"

namespace tarnwick::gpu {

namespace {

std::uint32_t index(std::size_t size) {
    return static_cast<std::uint32_t>(size);
}

} // namespace

VkWriteDescriptorSet vulkanWrite(const DescriptorWrite& write) {
    VkWriteDescriptorSet made{.sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET,
                              .dstBinding = write.binding,
                              .descriptorCount = 1,
                              .descriptorType = write.type};
    switch (write.type) {
    case VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER:
    case VK_DESCRIPTOR_TYPE_STORAGE_BUFFER:
        made.pBufferInfo = &write.buffer;
        break;
    case VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER:
    case VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER:
        made.pTexelBufferView = &write.texels;
        break;
    default:
        made.pImageInfo = &write.image;
    }
    return made;
}

void CommandStream::pushDescriptors(VkPipelineBindPoint point, VkPipelineLayout layout,
                                    std::size_t first) {
    add(command::PushDescriptors{point, layout, index(first), index(writes.size() - first)});
}

void CommandStream::pushConstants(VkPipelineLayout layout, VkShaderStageFlags stages,
                                  std::span<const std::byte> bytes) {
    add(command::PushConstants{layout, stages, index(constants.size()), index(bytes.size())});
    constants.insert(constants.end(), bytes.begin(), bytes.end());
}

void CommandStream::barrier(const VkMemoryBarrier2* memory,
                            std::span<const VkImageMemoryBarrier2> barriers) {
    add(command::Barrier{memory != nullptr, memory ? *memory : VkMemoryBarrier2{},
                         index(images.size()), index(barriers.size())});
    images.insert(images.end(), barriers.begin(), barriers.end());
}

void CommandStream::beginRendering(const RenderingRecord& rendering) {
    add(command::BeginRendering{index(renderings.size())});
    renderings.push_back(rendering);
}

std::uint32_t CommandStream::traitsIndex(const std::shared_ptr<WorkTraits>& given) {
    if (traits.empty() || traits.back() != given)
        traits.push_back(given);
    return index(traits.size() - 1);
}

void CommandStream::clear() {
    commands.clear();
    writes.clear();
    constants.clear();
    vertexBuffers.clear();
    images.clear();
    renderings.clear();
    traits.clear();
}

} // namespace tarnwick::gpu
