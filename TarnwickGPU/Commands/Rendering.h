// The steps that all draws of a render encoder share.
#pragma once

#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/VertexDescriptor.h"

namespace tarnwick::gpu {

inline constexpr TextureUse colorUse{
    VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL, VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT,
    VK_ACCESS_2_COLOR_ATTACHMENT_READ_BIT | VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT};
inline constexpr TextureUse depthUse{
    VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL,
    VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT | VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT,
    VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT | VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT};

// The use of the colour attachment `n`: another one once a draw has read it (ColorInputs.h).
TextureUse colorUseOf(const CommandBufferParts& parts, std::size_t n);

// The first target: of the colour attachments, then the depth.
const TextureDescriptor& targetDescriptor(const RenderPassDescriptor& pass);
// Pixels of the level to draw into.
VkExtent2D targetExtent(const RenderPassDescriptor& pass);

// Begins rendering, or continues it after breakRendering(), unless it is open.
void openRendering(CommandBufferParts& parts);
// Interrupts rendering so that kernels can run, after all draws so far.
void breakRendering(CommandBufferParts& parts);
// Later commands wait for all earlier ones and see their stores.
void waitForAll(CommandBufferParts& parts);

void encodeViewport(CommandBufferParts& parts, const Viewport& viewport);
void bindPipeline(CommandBufferParts& parts, VkPipeline pipeline);
// Sets the primitives, and the descriptors if they have changed. Call it last before a draw.
void readyDraw(CommandBufferParts& parts, const BindingLayout& layout, PrimitiveType type);
void readyDraw(CommandBufferParts& parts, const BindingLayout& layout,
               VkPrimitiveTopology topology);
// Binds the buffer for a draw of `count` indices.
void bindIndices(CommandBufferParts& parts, const Buffer& buffer, std::size_t offset,
                 IndexType type, std::uint32_t count);

} // namespace tarnwick::gpu
