// The Vulkan sides of textures and buffers.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickGPU/Vulkan/DeviceState.h"
#include "TarnwickGPU/Vulkan/TextureViews.h"

#include <vulkan/vulkan.h>

#include <memory>

namespace tarnwick::gpu {

struct DrawableSlot;

// Between encoders every texture rests in one layout, `rest`, so that command buffers may be
// encoded in any order and by any thread: none depends on what another one left behind.
struct TextureParts {
    // Contents are zero. Null when the device does not take it or memory is out.
    static std::unique_ptr<TextureParts> make(DeviceState& device, const TextureDescriptor&);
    // A swapchain's image, which stays its owner's. Null when memory is out.
    static std::unique_ptr<TextureParts> wrap(DeviceState& device, const TextureDescriptor&,
                                              VkImage image, DrawableSlot& drawable);

    explicit TextureParts(DeviceState& state) : device(state) {}
    ~TextureParts();
    TextureParts(const TextureParts&) = delete;
    TextureParts& operator=(const TextureParts&) = delete;

    DeviceState& device;
    std::shared_ptr<DeviceState> keepsAlive; // null for what the device itself owns
    TextureDescriptor descriptor;
    VkImage image = VK_NULL_HANDLE;
    VkDeviceMemory memory = VK_NULL_HANDLE; // null: the image is somebody else's
    std::byte* bytes = nullptr;             // level 0 as the CPU sees it, if it does
    std::size_t bytesPerRow = 0;            // of `bytes`
    std::size_t mappedLength = 0;           // bytes from `bytes` on
    TextureViews views;
    VkImageAspectFlags aspect = VK_IMAGE_ASPECT_COLOR_BIT;
    VkImageLayout rest = VK_IMAGE_LAYOUT_GENERAL;
    DrawableSlot* drawable = nullptr; // a swapchain's image

    bool isDepth() const { return aspect == VK_IMAGE_ASPECT_DEPTH_BIT; }
    // What a shader's resource sees of the texture; null where it is none for it: of another shape
    // or component, not made for that use, or without that level. Any thread.
    VkImageView viewFor(const msl::Resource& resource) const;
    // One level of one slice, to draw into. Null when memory is out. Any thread.
    VkImageView attachment(std::uint32_t level = 0, std::uint32_t slice = 0) const;
    VkImageSubresourceRange wholeRange() const {
        return {aspect, 0, VK_REMAINING_MIP_LEVELS, 0, VK_REMAINING_ARRAY_LAYERS};
    }
};

// For the layer's own jobs: after everything before, and before everything after.
void changeLayout(VkCommandBuffer commands, const TextureParts& parts, VkImageLayout from,
                  VkImageLayout to);

struct BufferParts {
    std::shared_ptr<DeviceState> device;
    BufferMemory memory;

    BufferParts(std::shared_ptr<DeviceState> state, const BufferMemory& made)
        : device(std::move(state)), memory(made) {}
    ~BufferParts() { bury(*device, memory); }
    BufferParts(const BufferParts&) = delete;
    BufferParts& operator=(const BufferParts&) = delete;
};

} // namespace tarnwick::gpu
