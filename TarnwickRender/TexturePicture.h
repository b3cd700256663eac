// A texture as a picture in memory.
#pragma once

#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Pictures/Picture.h"

namespace tarnwick {

// `texture` is shared, of format BGRA8Unorm, and the GPU is done with it. May block for a copy.
Picture pictureOf(const gpu::Texture& texture);

// The same into an existing picture, whose memory is reused if it is large enough.
void readPicture(const gpu::Texture& texture, Picture& picture);

} // namespace tarnwick
