// The Vulkan side of a texture.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickGPU/Resources/TextureViews.h"

#include <vulkan/vulkan.h>

#include <cstddef>
#include <memory>

namespace tarnwick::gpu {

class Residents;
class Transfers;
struct BufferParts;
struct DrawableSlot;

// Between encoders every texture is in one layout, `rest`, so that command buffers may be encoded
// in any order and by any thread: none depends on the layout in which another left a texture.
struct TextureParts {
    // Contents are zero. Null if the device does not support the texture or memory is exhausted.
    static std::unique_ptr<TextureParts> make(const DeviceRecord& device, Graveyard& graveyard,
                                              Transfers& transfers, const TextureDescriptor&);
    // The texels of a buffer, which the texture keeps. Null if the texture is not within the buffer
    // or the device does not support it.
    static std::unique_ptr<TextureParts> over(std::shared_ptr<BufferParts> buffer,
                                              const TextureDescriptor&, std::size_t offset);
    // A swapchain's image, owned by the swapchain. Null if out of memory.
    static std::unique_ptr<TextureParts> wrap(const DeviceRecord& device, Graveyard& graveyard,
                                              Transfers& transfers, const TextureImage& image,
                                              DrawableSlot& drawable);

    TextureParts(const DeviceRecord& record, Graveyard& yard, Transfers& copies)
        : device(record), graveyard(yard), transfers(copies) {}
    ~TextureParts();
    TextureParts(const TextureParts&) = delete;
    TextureParts& operator=(const TextureParts&) = delete;

    const DeviceRecord& device;
    Graveyard& graveyard;
    Transfers& transfers;
    std::shared_ptr<const void> keepsAlive; // the device; null for a texture that the device owns
    std::shared_ptr<BufferParts> buffer;    // of a texture over a buffer, shared with the buffer
    TextureImage image;
    VkDeviceMemory memory = VK_NULL_HANDLE; // null: a swapchain's image
    std::byte* bytes = nullptr;             // level 0 in the CPU's memory; null: not mapped
    std::size_t bytesPerRow = 0;            // of `bytes`
    std::size_t mappedLength = 0;           // bytes from `bytes` on
    TextureViews views{device, image};
    // Of a texture over a buffer, which has no image. Texels of two components as one number of 64
    // bits, if the device has atomic operations on them.
    VkBufferView texels = VK_NULL_HANDLE, wideTexels = VK_NULL_HANDLE;
    // Null if the resource has another shape, usage or component.
    VkBufferView texelsFor(const msl::Resource& resource) const;
    bool isReadableTarget = false; // fragment functions can read it while they draw into it
    VkImageLayout rest = VK_IMAGE_LAYOUT_GENERAL;
    DrawableSlot* drawable = nullptr; // of a swapchain's image
    Residents* residents = nullptr;   // lists the texture; null: not listed
    std::uint32_t handle = 0;         // among the residents
};

// A barrier for the layer's own jobs: it waits for all earlier work, and all later work waits for
// it.
void changeLayout(VkCommandBuffer commands, const TextureParts& parts, VkImageLayout from,
                  VkImageLayout to);

} // namespace tarnwick::gpu
