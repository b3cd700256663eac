// What a texture holds, as a picture in memory.
#pragma once

#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Pictures/Picture.h"

namespace tarnwick {

// `texture` is shared, of format BGRA8Unorm, and the GPU is done with it. May block for a copy.
Picture pictureOf(const gpu::Texture& texture);

// The same over a picture that is there, whose memory it takes where that is enough.
void readPicture(const gpu::Texture& texture, Picture& picture);

} // namespace tarnwick
