#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Resources/TextureParts.h"
#include "TarnwickGPU/Resources/Transfers.h"
#include "TarnwickGPU/Resources/ValueTexts.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::gpu {

namespace {

// Pixels in the CPU's memory.
template <typename Byte> struct Pixels {
    Byte* bytes;
    std::size_t bytesPerRow, bytesPerImage;
};

struct Block {
    std::size_t rowBytes = 0;
    std::uint32_t rows = 0, images = 0;

    std::size_t bytes() const { return rowBytes * rows * images; }
    template <typename Byte> Pixels<Byte> packed(Byte* bytes) const {
        return {bytes, rowBytes, rowBytes * rows};
    }
};

// The part of a texture that a call reads or writes.
struct Part {
    Region region;
    std::uint32_t level = 0, slice = 0;
};

bool isWithin(const TextureDescriptor& descriptor, const Part& part) {
    const Region& region = part.region;
    auto extent = [&](std::uint32_t first) { return std::max(first >> part.level, 1u); };
    return part.level < descriptor.mipLevels && part.slice < slices(descriptor) &&
           std::uint64_t{region.x} + region.width <= extent(descriptor.width) &&
           std::uint64_t{region.y} + region.height <= extent(descriptor.height) &&
           std::uint64_t{region.z} + region.depth <= extent(descriptor.depth);
}

Block blockOf(const TextureParts& parts, const Part& part) {
    const TextureDescriptor& descriptor = parts.image.descriptor;
    precondition(descriptor.storage == StorageMode::shared && descriptor.sampleCount == 1,
                 "a texture that the CPU reads or writes is shared and has one sample", "shared",
                 descriptor.storage == StorageMode::shared, "samples", descriptor.sampleCount);
    precondition(isWithin(descriptor, part), "a region is within its texture", "region",
                 part.region, "level", part.level, "slice", part.slice, "texture", descriptor);
    return {part.region.width * bytesPerPixel(descriptor.format), part.region.height,
            part.region.depth};
}

// A region of a texture in the CPU's memory; such a texture has one slice and one level.
Pixels<std::byte> mappedPixels(const TextureParts& parts, const Region& region) {
    return {parts.bytes + region.y * parts.bytesPerRow +
                region.x * bytesPerPixel(parts.image.descriptor.format),
            parts.bytesPerRow, 0};
}

VkBufferImageCopy copyOf(const TextureParts& parts, const Part& part) {
    const Region& region = part.region;
    return {.imageSubresource = {parts.image.aspect, part.level, part.slice, 1},
            .imageOffset = {static_cast<std::int32_t>(region.x),
                            static_cast<std::int32_t>(region.y),
                            static_cast<std::int32_t>(region.z)},
            .imageExtent = {region.width, region.height, region.depth}};
}

void copyPixels(const Pixels<std::byte>& to, const Pixels<const std::byte>& from,
                const Block& block) {
    const bool isPacked =
        block.images == 1 && to.bytesPerRow == block.rowBytes && from.bytesPerRow == block.rowBytes;
    if (isPacked) {
        std::memcpy(to.bytes, from.bytes, block.bytes());
        return;
    }
    for (std::uint32_t image = 0; image < block.images; ++image)
        for (std::uint32_t row = 0; row < block.rows; ++row)
            std::memcpy(to.bytes + image * to.bytesPerImage + row * to.bytesPerRow,
                        from.bytes + image * from.bytesPerImage + row * from.bytesPerRow,
                        block.rowBytes);
}

void write(const TextureParts& parts, const Part& part, const Pixels<const std::byte>& source) {
    const Block block = blockOf(parts, part);
    if (block.bytes() == 0)
        return;
    if (parts.bytes)
        return copyPixels(mappedPixels(parts, part.region), source, block);
    parts.transfers.upload(
        block.bytes(),
        [&](std::byte* staging) { copyPixels(block.packed(staging), source, block); },
        [&](VkCommandBuffer commands, VkBuffer staging) {
            const VkBufferImageCopy copy = copyOf(parts, part);
            constexpr auto target = VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
            changeLayout(commands, parts, parts.rest, target);
            vkCmdCopyBufferToImage(commands, staging, parts.image.handle, target, 1, &copy);
            changeLayout(commands, parts, target, parts.rest);
        });
}

void read(const TextureParts& parts, const Part& part, const Pixels<std::byte>& target) {
    const Block block = blockOf(parts, part);
    if (block.bytes() == 0)
        return;
    if (parts.bytes) {
        const auto [bytes, perRow, perImage] = mappedPixels(parts, part.region);
        return copyPixels(target, {bytes, perRow, perImage}, block);
    }
    parts.transfers.readBack(
        block.bytes(),
        [&](VkCommandBuffer commands, VkBuffer staging) {
            const VkBufferImageCopy copy = copyOf(parts, part);
            constexpr auto source = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
            changeLayout(commands, parts, parts.rest, source);
            vkCmdCopyImageToBuffer(commands, parts.image.handle, source, staging, 1, &copy);
            changeLayout(commands, parts, source, parts.rest);
        },
        [&](const std::byte* staging) { copyPixels(target, block.packed(staging), block); });
}

} // namespace

Texture::Texture(std::unique_ptr<TextureParts> parts) : parts_(std::move(parts)) {}
Texture::~Texture() = default;
const TextureDescriptor& Texture::descriptor() const {
    return parts_->image.descriptor;
}

void Texture::replace(const Region& region, std::uint32_t mipLevel, const void* bytes,
                      std::size_t bytesPerRow) {
    replace(region, mipLevel, 0, bytes, bytesPerRow, bytesPerRow * region.height);
}

void Texture::replace(const Region& region, std::uint32_t mipLevel, std::uint32_t slice,
                      const void* bytes, std::size_t bytesPerRow, std::size_t bytesPerImage) {
    write(*parts_, {region, mipLevel, slice},
          {static_cast<const std::byte*>(bytes), bytesPerRow, bytesPerImage});
}

void Texture::getBytes(void* bytes, std::size_t bytesPerRow, const Region& region,
                       std::uint32_t mipLevel) const {
    getBytes(bytes, bytesPerRow, bytesPerRow * region.height, region, mipLevel, 0);
}

void Texture::getBytes(void* bytes, std::size_t bytesPerRow, std::size_t bytesPerImage,
                       const Region& region, std::uint32_t mipLevel, std::uint32_t slice) const {
    read(*parts_, {region, mipLevel, slice},
         {static_cast<std::byte*>(bytes), bytesPerRow, bytesPerImage});
}

std::uint64_t Texture::gpuResourceID() const {
    return parts_->handle;
}

Texture::MappedPixels Texture::mapped() const {
    return {parts_->bytes, parts_->bytesPerRow, parts_->mappedLength};
}

} // namespace tarnwick::gpu
