// What the draws of a render encoder have in common.
#pragma once

#include "TarnwickGPU/Commands/CommandBufferParts.h"

namespace tarnwick::gpu {

inline constexpr TextureUse colorUse{
    VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL, VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT,
    VK_ACCESS_2_COLOR_ATTACHMENT_READ_BIT | VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT};
inline constexpr TextureUse depthUse{
    VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL,
    VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT | VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT,
    VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT | VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT};

const TextureDescriptor& targetDescriptor(const RenderPassDescriptor& pass);
// Pixels of the level that is drawn into.
VkExtent2D targetExtent(const RenderPassDescriptor& pass);

// Loads or clears the targets, unless they are open already.
void openRendering(CommandBufferParts& parts);
// Closes them for a while, so that kernels can run; these come after all that was drawn.
void breakRendering(CommandBufferParts& parts);
// What follows sees all that came before.
void waitForAll(CommandBufferParts& parts);

void encodeViewport(VkCommandBuffer commands, const Viewport& viewport);
void bindPipeline(CommandBufferParts& parts, VkPipeline pipeline);
// The last before a draw: primitives, and descriptors where they have changed.
void readyDraw(CommandBufferParts& parts, const BindingLayout& layout, PrimitiveType type);

} // namespace tarnwick::gpu
