// The barriers between encoders: one at each boundary.
//
// An encoder enters its textures, which changes their layouts, and leaves them at its end, which
// changes them back to the layout `rest`. Leaving is deferred until the next encoder begins: a
// texture that it enters again then changes its layout only once. The contents of a texture at rest
// are visible to every later command of the queue (Vulkan 1.3, 7.6).
#pragma once

#include "TarnwickGPU/Commands/CommandStream.h"
#include "TarnwickGPU/Resources/TextureParts.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <vector>

namespace tarnwick::gpu {

// The layout that a command needs, and the stages and accesses that use the texture.
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
    // Call it after commands of `stages` that did `writes` to buffers and to textures at rest.
    void afterWork(VkPipelineStageFlags2 stages, VkAccessFlags2 writes);
    // Adds the deferred barrier, if any.
    void flush(CommandStream& stream);
    void forget(); // the command buffer is recorded again

  private:
    std::vector<VkImageMemoryBarrier2> images_; // one per texture; keeps its memory between frames
    VkPipelineStageFlags2 stages_ = 0;
    VkAccessFlags2 writes_ = 0;
};

} // namespace tarnwick::gpu
