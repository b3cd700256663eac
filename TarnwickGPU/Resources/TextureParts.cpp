#include "TarnwickGPU/Resources/TextureParts.h"

#include "TarnwickGPU/Resources/BufferParts.h"
#include "TarnwickGPU/Resources/Memory.h"
#include "TarnwickGPU/Resources/Residents.h"
#include "TarnwickGPU/Resources/Transfers.h"
#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/Graveyard.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace tarnwick::gpu {

namespace {

// Whether fragment functions can read the texture while they draw into it.
bool isReadable(const DeviceRecord& device, const TextureDescriptor& descriptor) {
    return device.features.readsTargets && descriptor.usage.renderTarget &&
           !isDepth(descriptor.format) && descriptor.sampleCount == 1;
}

// Whether 64-bit atomic operations see the two halves of a texel as one number.
bool isWide(const DeviceRecord& device, const TextureDescriptor& descriptor) {
    return device.features.textureAtomics64 && descriptor.usage.shaderWrite &&
           descriptor.format == PixelFormat::rg32Uint;
}

VkImageUsageFlags imageUsage(const DeviceRecord& device, const TextureDescriptor& descriptor) {
    VkImageUsageFlags usage = VK_IMAGE_USAGE_TRANSFER_SRC_BIT | VK_IMAGE_USAGE_TRANSFER_DST_BIT;
    // The levels of a texture that is written are counted in a sampled view.
    if (descriptor.usage.shaderRead || descriptor.usage.shaderWrite)
        usage |= VK_IMAGE_USAGE_SAMPLED_BIT;
    if (descriptor.usage.shaderWrite)
        usage |= VK_IMAGE_USAGE_STORAGE_BIT;
    if (descriptor.usage.renderTarget)
        usage |= isDepth(descriptor.format) ? VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT
                                            : VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT;
    if (isReadable(device, descriptor))
        usage |= VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_ATTACHMENT_FEEDBACK_LOOP_BIT_EXT;
    return usage;
}

VkImageLayout restLayout(const TextureDescriptor& descriptor) {
    if (descriptor.usage.shaderWrite)
        return VK_IMAGE_LAYOUT_GENERAL;
    if (descriptor.usage.shaderRead)
        return VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL;
    if (!descriptor.usage.renderTarget)
        return VK_IMAGE_LAYOUT_GENERAL;
    return isDepth(descriptor.format) ? VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL
                                      : VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
}

VkImageCreateInfo imageInfo(const DeviceRecord& device, const TextureDescriptor& descriptor) {
    const TypeRow& type = rowOf(descriptor.type);
    VkImageCreateFlags flags = 0;
    if (type.isCube)
        flags |= VK_IMAGE_CREATE_CUBE_COMPATIBLE_BIT;
    if (isWide(device, descriptor))
        flags |= VK_IMAGE_CREATE_MUTABLE_FORMAT_BIT;
    return {.sType = VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO,
            .flags = flags,
            .imageType = type.image,
            .format = vulkanFormat(descriptor.format),
            .extent = {descriptor.width, descriptor.height, descriptor.depth},
            .mipLevels = descriptor.mipLevels,
            .arrayLayers = slices(descriptor),
            .samples = static_cast<VkSampleCountFlagBits>(descriptor.sampleCount),
            .tiling = VK_IMAGE_TILING_OPTIMAL,
            .usage = imageUsage(device, descriptor),
            .initialLayout = VK_IMAGE_LAYOUT_UNDEFINED};
}

bool isSensible(const TextureDescriptor& descriptor) {
    const TypeRow& type = rowOf(descriptor.type);
    const bool isMultisample = descriptor.type == TextureType::type2DMultisample ||
                               descriptor.type == TextureType::type2DMultisampleArray;
    const std::uint32_t longest = std::max({descriptor.width, descriptor.height, descriptor.depth});
    return descriptor.format != PixelFormat::invalid && descriptor.width > 0 &&
           descriptor.height > 0 && descriptor.depth > 0 && descriptor.mipLevels > 0 &&
           descriptor.mipLevels <= static_cast<std::uint32_t>(std::bit_width(longest)) &&
           (isMultisample ? descriptor.mipLevels == 1 : descriptor.sampleCount == 1) &&
           std::has_single_bit(descriptor.sampleCount) &&
           (type.image != VK_IMAGE_TYPE_1D || descriptor.height == 1) &&
           (type.image == VK_IMAGE_TYPE_3D || descriptor.depth == 1) &&
           (!type.isCube || descriptor.width == descriptor.height) && descriptor.arrayLength > 0 &&
           (type.isArray || descriptor.arrayLength == 1) &&
           (type.image == VK_IMAGE_TYPE_2D || !descriptor.usage.renderTarget);
}

VkDeviceSize leastBytes(const VkImageCreateInfo& info, PixelFormat format) {
    return VkDeviceSize{info.extent.width} * info.extent.height * info.extent.depth *
           info.arrayLayers * bytesPerPixel(format) * info.samples;
}

bool isSupported(const DeviceRecord& device, const VkImageCreateInfo& info, PixelFormat format) {
    VkImageFormatProperties properties;
    return vkGetPhysicalDeviceImageFormatProperties(device.physical, info.format, info.imageType,
                                                    info.tiling, info.usage, info.flags,
                                                    &properties) == VK_SUCCESS &&
           info.extent.width <= properties.maxExtent.width &&
           info.extent.height <= properties.maxExtent.height &&
           info.extent.depth <= properties.maxExtent.depth &&
           info.arrayLayers <= properties.maxArrayLayers &&
           info.mipLevels <= properties.maxMipLevels &&
           leastBytes(info, format) <= properties.maxResourceSize &&
           (properties.sampleCounts & static_cast<VkSampleCountFlags>(info.samples)) != 0;
}

VkImageCreateInfo linear(VkImageCreateInfo info) {
    info.tiling = VK_IMAGE_TILING_LINEAR;
    info.initialLayout = VK_IMAGE_LAYOUT_PREINITIALIZED;
    return info;
}

// A CPU driver draws into rows of ordinary memory, so the CPU can map them at no cost. On GPUs
// linear images are slow to draw into and to sample, so staging memory is used.
bool canBeMapped(const DeviceRecord& device, const TextureDescriptor& descriptor,
                 const VkImageCreateInfo& info) {
    return device.info.isCPU && descriptor.storage == StorageMode::shared &&
           descriptor.type == TextureType::type2D && descriptor.mipLevels == 1 &&
           isSupported(device, linear(info), descriptor.format);
}

bool map(TextureParts& parts) {
    const VkImageSubresource level{parts.image.aspect, 0, 0};
    VkSubresourceLayout layout;
    vkGetImageSubresourceLayout(parts.device.handle, parts.image.handle, &level, &layout);
    void* mapped = nullptr;
    if (vkMapMemory(parts.device.handle, parts.memory, 0, VK_WHOLE_SIZE, 0, &mapped) != VK_SUCCESS)
        return false;
    parts.bytes = static_cast<std::byte*>(mapped) + layout.offset;
    parts.bytesPerRow = layout.rowPitch;
    parts.mappedLength = layout.size;
    return true;
}

// A new image has neither contents nor a layout, and the packaged CPU driver crashes if it is
// sampled. So every texture is zero and at rest from the start.
bool clear(TextureParts& parts) {
    if (parts.bytes) {
        std::memset(parts.bytes, 0, parts.bytesPerRow * parts.image.descriptor.height);
        return parts.transfers.run([&parts](VkCommandBuffer commands) {
            changeLayout(commands, parts, VK_IMAGE_LAYOUT_PREINITIALIZED, parts.rest);
        });
    }
    return parts.transfers.run([&parts](VkCommandBuffer commands) {
        const VkImageSubresourceRange range = parts.image.wholeRange();
        constexpr auto target = VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
        changeLayout(commands, parts, VK_IMAGE_LAYOUT_UNDEFINED, target);
        const VkClearColorValue zero{};
        const VkClearDepthStencilValue zeroDepth{};
        if (parts.image.isDepth())
            vkCmdClearDepthStencilImage(commands, parts.image.handle, target, &zeroDepth, 1,
                                        &range);
        else
            vkCmdClearColorImage(commands, parts.image.handle, target, &zero, 1, &range);
        changeLayout(commands, parts, target, parts.rest);
    });
}

} // namespace

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
                                        .image = parts.image.handle,
                                        .subresourceRange = parts.image.wholeRange()};
    const VkDependencyInfo info{.sType = VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
                                .imageMemoryBarrierCount = 1,
                                .pImageMemoryBarriers = &barrier};
    vkCmdPipelineBarrier2(commands, &info);
}

std::unique_ptr<TextureParts> TextureParts::make(const DeviceRecord& device, Graveyard& graveyard,
                                                 Transfers& transfers,
                                                 const TextureDescriptor& descriptor) {
    if (descriptor.type == TextureType::typeTextureBuffer) {
        const std::size_t bytes = descriptor.width * bytesPerPixel(descriptor.format);
        auto buffer = BufferParts::make(device, graveyard, transfers, bytes, descriptor.storage);
        return buffer ? over(std::move(buffer), descriptor, 0) : nullptr;
    }
    VkImageCreateInfo info = imageInfo(device, descriptor);
    if (!isSensible(descriptor) || !isSupported(device, info, descriptor.format))
        return nullptr;
    const bool isMapped = canBeMapped(device, descriptor, info);
    if (isMapped)
        info = linear(info);
    auto parts = std::make_unique<TextureParts>(device, graveyard, transfers);
    TextureImage& image = parts->image;
    image.descriptor = descriptor;
    parts->isReadableTarget = isReadable(device, descriptor);
    parts->rest = isMapped ? VK_IMAGE_LAYOUT_GENERAL : restLayout(descriptor);
    if (isDepth(descriptor.format))
        image.aspect = VK_IMAGE_ASPECT_DEPTH_BIT;
    if (vkCreateImage(device.handle, &info, nullptr, &image.handle) != VK_SUCCESS)
        return nullptr;
    parts->memory =
        makeImageMemory(device, image.handle, isMapped ? MemoryUse::readBack : MemoryUse::gpuOnly);
    if (!parts->memory) {
        vkDestroyImage(device.handle, image.handle, nullptr);
        return nullptr;
    }
    if ((isMapped && !map(*parts)) || !parts->views.start() || !clear(*parts))
        return nullptr;
    return parts;
}

std::unique_ptr<TextureParts> TextureParts::wrap(const DeviceRecord& device, Graveyard& graveyard,
                                                 Transfers& transfers, const TextureImage& image,
                                                 DrawableSlot& drawable) {
    auto parts = std::make_unique<TextureParts>(device, graveyard, transfers);
    parts->image = image;
    parts->rest = VK_IMAGE_LAYOUT_PRESENT_SRC_KHR;
    parts->drawable = &drawable;
    if (!parts->views.start())
        return nullptr;
    return parts;
}

// Whether the texels are in the buffer and the device can show them to shaders.
static bool isSupported(const BufferParts& buffer, const TextureDescriptor& descriptor,
                        std::size_t offset) {
    const DeviceRecord& device = buffer.device;
    VkFormatProperties format;
    vkGetPhysicalDeviceFormatProperties(device.physical, vulkanFormat(descriptor.format), &format);
    VkFormatFeatureFlags needed = 0;
    if (descriptor.usage.shaderRead)
        needed |= VK_FORMAT_FEATURE_UNIFORM_TEXEL_BUFFER_BIT;
    if (descriptor.usage.shaderWrite)
        needed |= VK_FORMAT_FEATURE_STORAGE_TEXEL_BUFFER_BIT;
    const VkDeviceSize bytes = VkDeviceSize{descriptor.width} * bytesPerPixel(descriptor.format);
    return bytes > 0 && (format.bufferFeatures & needed) == needed && !isDepth(descriptor.format) &&
           descriptor.width <= device.limits.maxTexelBufferElements && descriptor.height == 1 &&
           descriptor.depth == 1 && descriptor.mipLevels == 1 && descriptor.arrayLength == 1 &&
           descriptor.sampleCount == 1 && !descriptor.usage.renderTarget &&
           offset % device.limits.minTexelBufferOffsetAlignment == 0 &&
           bytes <= buffer.memory.size && offset <= buffer.memory.size - bytes;
}

std::unique_ptr<TextureParts> TextureParts::over(std::shared_ptr<BufferParts> buffer,
                                                 const TextureDescriptor& descriptor,
                                                 std::size_t offset) {
    if (descriptor.type != TextureType::typeTextureBuffer ||
        !isSupported(*buffer, descriptor, offset))
        return nullptr;
    auto parts =
        std::make_unique<TextureParts>(buffer->device, buffer->graveyard, buffer->transfers);
    const BufferMemory& memory = buffer->memory;
    VkBufferViewCreateInfo info{.sType = VK_STRUCTURE_TYPE_BUFFER_VIEW_CREATE_INFO,
                                .buffer = memory.buffer,
                                .format = vulkanFormat(descriptor.format),
                                .offset = offset,
                                .range = VkDeviceSize{descriptor.width} *
                                         bytesPerPixel(descriptor.format)};
    if (vkCreateBufferView(buffer->device.handle, &info, nullptr, &parts->texels) != VK_SUCCESS)
        return nullptr;
    info.format = VK_FORMAT_R64_UINT;
    if (isWide(buffer->device, descriptor) &&
        vkCreateBufferView(buffer->device.handle, &info, nullptr, &parts->wideTexels) != VK_SUCCESS)
        return nullptr;
    parts->image.descriptor = descriptor;
    parts->image.descriptor.storage = memory.bytes ? StorageMode::shared : StorageMode::private_;
    if (memory.bytes) {
        parts->bytes = memory.bytes + offset;
        parts->bytesPerRow = info.range;
        parts->mappedLength = info.range;
    }
    if (buffer->residents) {
        parts->residents = buffer->residents;
        parts->handle = buffer->residents->add(*parts);
    }
    parts->buffer = std::move(buffer);
    return parts;
}

VkBufferView TextureParts::texelsFor(const msl::Resource& resource) const {
    if (resource.shape != msl::TextureShape::buffer || !isUsable(resource, image.descriptor))
        return VK_NULL_HANDLE;
    return resource.component == msl::TextureComponent::ulong_ ? wideTexels : texels;
}

TextureParts::~TextureParts() {
    if (residents)
        residents->remove(handle);
    graveyard.bury(texels, wideTexels);
    views.bury(graveyard);
    if (memory)
        graveyard.bury(image.handle, memory);
}

} // namespace tarnwick::gpu
