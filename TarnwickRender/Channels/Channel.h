// A picture that an episode reads as one of its channels.
#pragma once

#include "TarnwickGPU/Resources.h"

namespace tarnwick {

// One thread at a time.
class Channel {
  public:
    virtual ~Channel() = default;

    // The picture at `time` seconds of the episode that reads it; null: black. Valid until the next
    // call. Decodes or draws what has changed, and waits for it. Throws InputError.
    virtual const gpu::Texture* at(double time) = 0;
};

} // namespace tarnwick
