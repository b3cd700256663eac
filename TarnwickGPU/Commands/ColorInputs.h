// The colours so far that a fragment function takes as arguments, `[[color(n)]]`: the targets'
// texels.
//
// Vulkan orders the draws of a render pass, but a draw cannot read its targets without a barrier.
// So rendering is interrupted before each draw that takes colours, and continues with the targets'
// contents. Where a draw may read its targets (VK_EXT_attachment_feedback_loop_layout, on CPU
// devices) the function reads the target itself, and on the packaged driver, which shades the
// fragments of a pixel one after the other, it sees the fragments before it in its own draw as
// well. Elsewhere the target is copied first: the function sees the draws before its own.
#pragma once

#include <cstdint>

namespace tarnwick::gpu {

struct CommandBufferParts;

// Readies the colours so far for the next draw of the render encoder. `inputs`: bit n for color(n).
void readyColorInputs(CommandBufferParts& parts, std::uint32_t inputs);

} // namespace tarnwick::gpu
