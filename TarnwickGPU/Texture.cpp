#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/TextureParts.h"
#include "TarnwickGPU/VulkanFormat.h"

#include <bit>
#include <cstring>

namespace tarnwick::gpu {

namespace {

VkImageUsageFlags imageUsage(const TextureDescriptor& descriptor) {
    VkImageUsageFlags usage = VK_IMAGE_USAGE_TRANSFER_SRC_BIT | VK_IMAGE_USAGE_TRANSFER_DST_BIT;
    if (descriptor.usage.shaderRead)
        usage |= VK_IMAGE_USAGE_SAMPLED_BIT;
    if (descriptor.usage.shaderWrite)
        usage |= VK_IMAGE_USAGE_STORAGE_BIT;
    if (descriptor.usage.renderTarget)
        usage |= descriptor.format == PixelFormat::depth32Float
                     ? VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT
                     : VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT;
    return usage;
}

VkImageLayout restLayout(const TextureDescriptor& descriptor) {
    if (descriptor.usage.shaderWrite)
        return VK_IMAGE_LAYOUT_GENERAL;
    if (descriptor.usage.shaderRead)
        return VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL;
    if (!descriptor.usage.renderTarget)
        return VK_IMAGE_LAYOUT_GENERAL;
    return descriptor.format == PixelFormat::depth32Float
               ? VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL
               : VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
}

VkImageCreateInfo imageInfo(const TextureDescriptor& descriptor) {
    return {.sType = VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO,
            .imageType = VK_IMAGE_TYPE_2D,
            .format = vulkanFormat(descriptor.format),
            .extent = {descriptor.width, descriptor.height, 1},
            .mipLevels = descriptor.mipLevels,
            .arrayLayers = 1,
            .samples = static_cast<VkSampleCountFlagBits>(descriptor.sampleCount),
            .tiling = VK_IMAGE_TILING_OPTIMAL,
            .usage = imageUsage(descriptor),
            .initialLayout = VK_IMAGE_LAYOUT_UNDEFINED};
}

bool isSensible(const TextureDescriptor& descriptor) {
    const bool isMultisample = descriptor.type == TextureType::type2DMultisample;
    return descriptor.format != PixelFormat::invalid && descriptor.width > 0 &&
           descriptor.height > 0 && descriptor.mipLevels > 0 &&
           (isMultisample ? descriptor.mipLevels == 1 : descriptor.sampleCount == 1) &&
           std::has_single_bit(descriptor.sampleCount);
}

bool isSupported(const DeviceState& device, const VkImageCreateInfo& info) {
    VkImageFormatProperties properties;
    return vkGetPhysicalDeviceImageFormatProperties(device.physical, info.format, info.imageType,
                                                    info.tiling, info.usage, info.flags,
                                                    &properties) == VK_SUCCESS &&
           info.extent.width <= properties.maxExtent.width &&
           info.extent.height <= properties.maxExtent.height &&
           info.mipLevels <= properties.maxMipLevels &&
           (properties.sampleCounts & static_cast<VkSampleCountFlags>(info.samples)) != 0;
}

VkImageView makeView(const TextureParts& parts, std::uint32_t levels) {
    const VkImageViewCreateInfo info{.sType = VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO,
                                     .image = parts.image,
                                     .viewType = VK_IMAGE_VIEW_TYPE_2D,
                                     .format = vulkanFormat(parts.descriptor.format),
                                     .subresourceRange = {parts.aspect, 0, levels, 0, 1}};
    VkImageView view = VK_NULL_HANDLE;
    if (vkCreateImageView(parts.device.handle, &info, nullptr, &view) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return view;
}

bool makeViews(TextureParts& parts) {
    const TextureDescriptor& descriptor = parts.descriptor;
    const TextureUsage& usage = descriptor.usage;
    if (!usage.shaderRead && !usage.shaderWrite && !usage.renderTarget)
        return true;
    parts.view = makeView(parts, descriptor.mipLevels);
    const bool needsOwn = usage.renderTarget && descriptor.mipLevels > 1;
    if (needsOwn)
        parts.attachmentView = makeView(parts, 1);
    return parts.view && (!needsOwn || parts.attachmentView);
}

// Layout changes of the layer's own jobs: everything before, everything after.
void changeLayout(VkCommandBuffer commands, const TextureParts& parts, VkImageLayout from,
                  VkImageLayout to) {
    const VkImageMemoryBarrier2 barrier{.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
                                        .srcStageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT,
                                        .srcAccessMask = VK_ACCESS_2_MEMORY_WRITE_BIT,
                                        .dstStageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT,
                                        .dstAccessMask = VK_ACCESS_2_MEMORY_READ_BIT |
                                                         VK_ACCESS_2_MEMORY_WRITE_BIT,
                                        .oldLayout = from,
                                        .newLayout = to,
                                        .srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                        .dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                        .image = parts.image,
                                        .subresourceRange = parts.wholeRange()};
    const VkDependencyInfo info{.sType = VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
                                .imageMemoryBarrierCount = 1,
                                .pImageMemoryBarriers = &barrier};
    vkCmdPipelineBarrier2(commands, &info);
}

// A fresh image has neither contents nor layout, and the packaged CPU driver crashes on sampling
// one. So every texture starts as zeros, at rest.
bool clear(TextureParts& parts) {
    return parts.device.transfers.run(parts.device, [&parts](VkCommandBuffer commands) {
        const VkImageSubresourceRange range = parts.wholeRange();
        constexpr auto target = VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
        changeLayout(commands, parts, VK_IMAGE_LAYOUT_UNDEFINED, target);
        const VkClearColorValue zero{};
        const VkClearDepthStencilValue zeroDepth{};
        if (parts.isDepth())
            vkCmdClearDepthStencilImage(commands, parts.image, target, &zeroDepth, 1, &range);
        else
            vkCmdClearColorImage(commands, parts.image, target, &zero, 1, &range);
        changeLayout(commands, parts, target, parts.rest);
    });
}

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

std::unique_ptr<TextureParts> TextureParts::make(DeviceState& device,
                                                 const TextureDescriptor& descriptor) {
    const VkImageCreateInfo info = imageInfo(descriptor);
    if (!isSensible(descriptor) || !isSupported(device, info))
        return nullptr;
    auto parts = std::make_unique<TextureParts>(device);
    parts->descriptor = descriptor;
    parts->rest = restLayout(descriptor);
    if (descriptor.format == PixelFormat::depth32Float)
        parts->aspect = VK_IMAGE_ASPECT_DEPTH_BIT;
    if (vkCreateImage(device.handle, &info, nullptr, &parts->image) != VK_SUCCESS)
        return nullptr;
    parts->memory = makeImageMemory(device, parts->image);
    if (!parts->memory) {
        vkDestroyImage(device.handle, parts->image, nullptr);
        return nullptr;
    }
    if (!makeViews(*parts) || !clear(*parts))
        return nullptr;
    return parts;
}

std::unique_ptr<TextureParts> TextureParts::wrap(DeviceState& device,
                                                 const TextureDescriptor& descriptor, VkImage image,
                                                 DrawableSlot& drawable) {
    auto parts = std::make_unique<TextureParts>(device);
    parts->descriptor = descriptor;
    parts->image = image;
    parts->rest = VK_IMAGE_LAYOUT_PRESENT_SRC_KHR;
    parts->drawable = &drawable;
    if (!makeViews(*parts))
        return nullptr;
    return parts;
}

TextureParts::~TextureParts() {
    device.bury(attachmentView, view);
    if (memory)
        device.bury(image, memory);
}

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
    parts.device.transfers.upload(
        parts.device, rows.rowBytes * rows.rows,
        [&](std::byte* staging) {
            copyRows(staging, rows.rowBytes, static_cast<const std::byte*>(bytes), bytesPerRow,
                     rows);
        },
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
    parts.device.transfers.readBack(
        parts.device, rows.rowBytes * rows.rows,
        [&](VkCommandBuffer commands, VkBuffer staging) {
            const VkBufferImageCopy copy = copyOf(parts, region, mipLevel);
            constexpr auto source = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
            changeLayout(commands, parts, parts.rest, source);
            vkCmdCopyImageToBuffer(commands, parts.image, source, staging, 1, &copy);
            changeLayout(commands, parts, source, parts.rest);
        },
        [&](std::byte* staging) {
            copyRows(static_cast<std::byte*>(bytes), bytesPerRow, staging, rows.rowBytes, rows);
        });
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
