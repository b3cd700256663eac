// The seam of a loop as a picture.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "programs/Episode/EpisodeLoop.h"

namespace tarnwick {

// Three pictures side by side: the frame at the start of the loop, the frame that follows its end,
// and the absolute difference of both, eight times as bright. They are the same if the loop has no
// seam. Throws CommandError.
Picture seamOf(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
               const Timeline& timeline, double start, double length,
               const ChannelSources& channels);

} // namespace tarnwick
