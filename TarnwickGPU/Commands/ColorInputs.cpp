#include "TarnwickGPU/Commands/ColorInputs.h"

#include "TarnwickGPU/Commands/Rendering.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Resources/TextureParts.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <utility>

namespace tarnwick::gpu {

namespace {

constexpr VkPipelineStageFlags2 everyStage = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT;
constexpr VkAccessFlags2 everyAccess = VK_ACCESS_2_MEMORY_READ_BIT | VK_ACCESS_2_MEMORY_WRITE_BIT;

void changeLayout(CommandBufferParts& parts, const TextureImage& image, VkImageLayout from,
                  VkImageLayout to) {
    const VkImageMemoryBarrier2 barrier{.sType = VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
                                        .srcStageMask = everyStage,
                                        .srcAccessMask = everyAccess,
                                        .dstStageMask = everyStage,
                                        .dstAccessMask = everyAccess,
                                        .oldLayout = from,
                                        .newLayout = to,
                                        .srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                        .dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED,
                                        .image = image.handle,
                                        .subresourceRange = image.wholeRange()};
    parts.stream->barrier(nullptr, {&barrier, 1});
}

// The draw reads the target itself, in the layout for both.
void showTarget(CommandBufferParts& parts, const ColorAttachment& color, ColorInput& input) {
    constexpr auto layout = VK_IMAGE_LAYOUT_ATTACHMENT_FEEDBACK_LOOP_OPTIMAL_EXT;
    if (!std::exchange(input.isTarget, true))
        changeLayout(parts, color.texture->parts().image, colorUse.layout, layout);
    input.view = color.texture->parts().views.attachment(color.level, color.slice);
    input.layout = layout;
}

// A copy of the target as it is before the draw. It lives as long as the command buffer.
void showCopy(CommandBufferParts& parts, const ColorAttachment& color, ColorInput& input) {
    const TextureParts& target = color.texture->parts();
    const VkExtent2D extent = targetExtent(parts.pass);
    DeviceState& device = *parts.device;
    auto copy = TextureParts::make(device.record, device.graveyard, device.transfers,
                                   {.format = target.image.descriptor.format,
                                    .width = extent.width,
                                    .height = extent.height,
                                    .storage = StorageMode::private_});
    if (!copy) {
        parts.failed = true;
        return;
    }
    constexpr auto source = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
    constexpr auto destination = VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
    const VkImageCopy region{.srcSubresource = {target.image.aspect, color.level, color.slice, 1},
                             .dstSubresource = {copy->image.aspect, 0, 0, 1},
                             .extent = {extent.width, extent.height, 1}};
    changeLayout(parts, target.image, colorUse.layout, source);
    changeLayout(parts, copy->image, VK_IMAGE_LAYOUT_UNDEFINED, destination);
    parts.stream->add(
        command::CopyImage{target.image.handle, source, copy->image.handle, destination, region});
    changeLayout(parts, target.image, source, colorUse.layout);
    changeLayout(parts, copy->image, destination, copy->rest);
    input.view = copy->views.whole();
    input.layout = copy->rest;
    parts.copies.push_back(std::move(copy));
}

} // namespace

void readyColorInputs(CommandBufferParts& parts, std::uint32_t inputs) {
    openRendering(parts); // clears or loads the targets
    breakRendering(parts);
    for (std::size_t n = 0; n < mostColors; ++n) {
        const ColorAttachment& color = parts.pass.colorAt(n);
        if ((inputs >> n & 1) == 0 || !color.texture)
            continue;
        ColorInput& input = parts.colorInputs[n];
        input.component = componentOf(color.texture->descriptor().format);
        if (parts.device->record.features.readsTargets && color.texture->parts().isReadableTarget)
            showTarget(parts, color, input);
        else
            showCopy(parts, color, input);
    }
    parts.resourcesChanged = true;
}

} // namespace tarnwick::gpu
