#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/TextureParts.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::gpu {

namespace {

struct RowCopy {
    std::size_t rowBytes;
    std::uint32_t rows;
};

RowCopy rowsOf(const TextureParts& parts, const Region& region, std::uint32_t level) {
    const TextureDescriptor& descriptor = parts.descriptor;
    precondition(descriptor.storage == StorageMode::shared,
                 "The CPU reaches shared textures only.");
    precondition(level < descriptor.mipLevels &&
                     region.x + region.width <= std::max(descriptor.width >> level, 1u) &&
                     region.y + region.height <= std::max(descriptor.height >> level, 1u),
                 "A region lies within its texture.");
    return {region.width * bytesPerPixel(descriptor.format), region.height};
}

// The first byte of a region of a texture that the CPU sees.
std::byte* bytesAt(const TextureParts& parts, const Region& region) {
    return parts.bytes + region.y * parts.bytesPerRow +
           region.x * bytesPerPixel(parts.descriptor.format);
}

VkBufferImageCopy copyOf(const TextureParts& parts, const Region& region, std::uint32_t level) {
    return {.imageSubresource = {parts.aspect, level, 0, 1},
            .imageOffset = {static_cast<std::int32_t>(region.x),
                            static_cast<std::int32_t>(region.y), 0},
            .imageExtent = {region.width, region.height, 1}};
}

void copyRows(std::byte* target, std::size_t targetStride, const std::byte* source,
              std::size_t sourceStride, RowCopy copy) {
    if (targetStride == copy.rowBytes && sourceStride == copy.rowBytes) {
        std::memcpy(target, source, copy.rowBytes * copy.rows);
        return;
    }
    for (std::uint32_t row = 0; row < copy.rows; ++row)
        std::memcpy(target + row * targetStride, source + row * sourceStride, copy.rowBytes);
}

} // namespace

Texture::Texture(std::unique_ptr<TextureParts> parts) : parts_(std::move(parts)) {}
Texture::~Texture() = default;
const TextureDescriptor& Texture::descriptor() const {
    return parts_->descriptor;
}

void Texture::replace(const Region& region, std::uint32_t mipLevel, const void* bytes,
                      std::size_t bytesPerRow) {
    const TextureParts& parts = *parts_;
    const RowCopy rows = rowsOf(parts, region, mipLevel);
    if (rows.rowBytes == 0 || rows.rows == 0)
        return;
    const auto* source = static_cast<const std::byte*>(bytes);
    if (parts.bytes)
        return copyRows(bytesAt(parts, region), parts.bytesPerRow, source, bytesPerRow, rows);
    parts.device.transfers.upload(
        parts.device, rows.rowBytes * rows.rows,
        [&](std::byte* staging) { copyRows(staging, rows.rowBytes, source, bytesPerRow, rows); },
        [&](VkCommandBuffer commands, VkBuffer staging) {
            const VkBufferImageCopy copy = copyOf(parts, region, mipLevel);
            constexpr auto target = VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
            changeLayout(commands, parts, parts.rest, target);
            vkCmdCopyBufferToImage(commands, staging, parts.image, target, 1, &copy);
            changeLayout(commands, parts, target, parts.rest);
        });
}

void Texture::getBytes(void* bytes, std::size_t bytesPerRow, const Region& region,
                       std::uint32_t mipLevel) const {
    const TextureParts& parts = *parts_;
    const RowCopy rows = rowsOf(parts, region, mipLevel);
    if (rows.rowBytes == 0 || rows.rows == 0)
        return;
    auto* target = static_cast<std::byte*>(bytes);
    if (parts.bytes)
        return copyRows(target, bytesPerRow, bytesAt(parts, region), parts.bytesPerRow, rows);
    parts.device.transfers.readBack(
        parts.device, rows.rowBytes * rows.rows,
        [&](VkCommandBuffer commands, VkBuffer staging) {
            const VkBufferImageCopy copy = copyOf(parts, region, mipLevel);
            constexpr auto source = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
            changeLayout(commands, parts, parts.rest, source);
            vkCmdCopyImageToBuffer(commands, parts.image, source, staging, 1, &copy);
            changeLayout(commands, parts, source, parts.rest);
        },
        [&](std::byte* staging) { copyRows(target, bytesPerRow, staging, rows.rowBytes, rows); });
}

std::unique_ptr<Texture> Device::newTexture(const TextureDescriptor& descriptor) {
    if (isLost())
        return nullptr;
    state_->graveyard.collect(state_->handle, state_->submissions.completed());
    auto parts = TextureParts::make(*state_, descriptor);
    if (!parts)
        return nullptr;
    parts->keepsAlive = state_;
    return std::make_unique<Texture>(std::move(parts));
}

} // namespace tarnwick::gpu
