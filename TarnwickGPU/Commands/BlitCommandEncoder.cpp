#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Resources/ValueTexts.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

constexpr TextureUse sourceUse{VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, VK_PIPELINE_STAGE_2_COPY_BIT,
                               VK_ACCESS_2_TRANSFER_READ_BIT};
constexpr TextureUse destinationUse{VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
                                    VK_PIPELINE_STAGE_2_COPY_BIT, VK_ACCESS_2_TRANSFER_WRITE_BIT};

// The levels are read and written in one layout.
constexpr TextureUse mipmapUse{VK_IMAGE_LAYOUT_GENERAL, VK_PIPELINE_STAGE_2_BLIT_BIT,
                               VK_ACCESS_2_TRANSFER_READ_BIT | VK_ACCESS_2_TRANSFER_WRITE_BIT};

VkOffset3D extent(const TextureDescriptor& texture, std::uint32_t level) {
    auto size = [level](std::uint32_t first) {
        return static_cast<std::int32_t>(std::max(first >> level, 1u));
    };
    return {size(texture.width), size(texture.height), size(texture.depth)};
}

bool isWithin(const TextureDescriptor& texture, const Region& region) {
    return std::uint64_t{region.x} + region.width <= texture.width &&
           std::uint64_t{region.y} + region.height <= texture.height;
}

void checkCopy(const TextureImage& from, const Region& source, const TextureImage& to,
               const Region& target) {
    const TextureDescriptor &given = from.descriptor, &taken = to.descriptor;
    precondition(&from != &to, "a copy is between two textures");
    precondition(given.format == taken.format && given.sampleCount == taken.sampleCount,
                 "a copy is between textures of one format and sample count", "source VkFormat",
                 static_cast<int>(vulkanFormat(given.format)), "destination VkFormat",
                 static_cast<int>(vulkanFormat(taken.format)), "source samples", given.sampleCount,
                 "destination samples", taken.sampleCount);
    precondition(isWithin(given, source), "the region to copy is within its texture", "region",
                 source, "texture", given);
    precondition(isWithin(taken, target), "the region to copy to is within its texture", "region",
                 target, "texture", taken);
}

VkOffset3D offset(std::uint32_t x, std::uint32_t y) {
    return {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y), 0};
}

} // namespace

std::optional<BlitCommandEncoder> CommandBuffer::blitCommandEncoder() {
    if (parts_->device->submissions.isLost() || parts_->failed)
        return std::nullopt;
    parts_->startEncoding(Encoding::blit);
    return BlitCommandEncoder(*parts_);
}

void BlitCommandEncoder::copy(const Texture& source, const Region& region,
                              const Texture& destination, std::uint32_t destinationX,
                              std::uint32_t destinationY) {
    const TextureParts& from = source.parts();
    const TextureParts& to = destination.parts();
    const Region target{destinationX, destinationY, region.width, region.height};
    checkCopy(from.image, region, to.image, target);
    if (region.width == 0 || region.height == 0)
        return;
    parts_->enter(from, sourceUse, Contents::kept);
    parts_->enter(to, destinationUse, Contents::kept);
    parts_->barriers.flush(*parts_->stream);
    const VkImageCopy copy{.srcSubresource = {from.image.aspect, 0, 0, 1},
                           .srcOffset = offset(region.x, region.y),
                           .dstSubresource = {to.image.aspect, 0, 0, 1},
                           .dstOffset = offset(destinationX, destinationY),
                           .extent = {region.width, region.height, 1}};
    parts_->stream->add(command::CopyImage{from.image.handle, sourceUse.layout, to.image.handle,
                                           destinationUse.layout, copy});
    parts_->barriers.leave(from, sourceUse);
    parts_->barriers.leave(to, destinationUse);
}

void BlitCommandEncoder::generateMipmaps(const Texture& texture) {
    const TextureParts& parts = texture.parts();
    const TextureDescriptor& descriptor = parts.image.descriptor;
    precondition(descriptor.mipLevels > 1, "a texture whose levels are generated has several",
                 "texture", descriptor);
    precondition(!parts.image.isDepth() &&
                     componentOf(descriptor.format) == msl::TextureComponent::float_,
                 "a texture whose levels are generated has colours that can be filtered",
                 "VkFormat", static_cast<int>(vulkanFormat(descriptor.format)));
    parts_->enter(parts, mipmapUse, Contents::kept);
    parts_->barriers.flush(*parts_->stream);
    for (std::uint32_t level = 1; level < descriptor.mipLevels; ++level) {
        const VkImageBlit blit{
            .srcSubresource = {parts.image.aspect, level - 1, 0, slices(descriptor)},
            .srcOffsets = {{}, extent(descriptor, level - 1)},
            .dstSubresource = {parts.image.aspect, level, 0, slices(descriptor)},
            .dstOffsets = {{}, extent(descriptor, level)}};
        parts_->stream->add(command::BlitImage{parts.image.handle, mipmapUse.layout, blit});
        parts_->barriers.afterWork(mipmapUse.stages, VK_ACCESS_2_TRANSFER_WRITE_BIT);
        parts_->barriers.flush(*parts_->stream);
    }
    parts_->barriers.leave(parts, mipmapUse);
}

void BlitCommandEncoder::endEncoding() {
    parts_->endEncoding(Encoding::blit);
}

} // namespace tarnwick::gpu
