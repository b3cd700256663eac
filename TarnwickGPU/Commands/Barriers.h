// What must be waited for between encoders: one vkCmdPipelineBarrier2 at each boundary.
//
// An encoder enters the textures that it needs in a layout of its own and leaves them when it ends.
// Leaving is put off, so that a texture which the next encoder enters again goes from layout to
// layout without resting. Everything that rests is visible to every later command, of this
// submission and of later ones on the queue (Vulkan 1.3, 7.6).
#pragma once

#include "TarnwickGPU/Resources/TextureParts.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <vector>

namespace tarnwick::gpu {

// How a command uses a texture.
struct TextureUse {
    VkImageLayout layout = VK_IMAGE_LAYOUT_GENERAL;
    VkPipelineStageFlags2 stages = 0;
    VkAccessFlags2 access = 0;
};

enum class Contents : std::uint8_t { kept, discarded };

class Barriers {
  public:
    void enter(const TextureParts& texture, const TextureUse& use, Contents contents);
    void leave(const TextureParts& texture, const TextureUse& use);
    // Commands of `stages` ran, and did `writes` to buffers and resting textures.
    void afterWork(VkPipelineStageFlags2 stages, VkAccessFlags2 writes);
    // Encodes what was put off, if anything.
    void flush(VkCommandBuffer commands);
    void forget(); // the command buffer starts anew

  private:
    std::vector<VkImageMemoryBarrier2> images_; // one a texture; keeps its room between frames
    VkPipelineStageFlags2 stages_ = 0;
    VkAccessFlags2 writes_ = 0;
};

} // namespace tarnwick::gpu
