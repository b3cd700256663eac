// A picture that an episode reads as one of its channels.
#pragma once

#include "TarnwickGPU/Resources.h"

namespace tarnwick {

// One thread at a time.
class Channel {
  public:
    virtual ~Channel() = default;

    // Does a part of what at() of that time waits for, and blocks for a part of a second. True once
    // at() gives exactly the picture of that time. A channel whose at() waits is always ready.
    virtual bool prepare(double) { return true; }

    // The picture at `time` seconds of the episode that reads it; null: black. Valid until the next
    // call. Decodes or draws what has changed, and waits for it. Throws InputError.
    virtual const gpu::Texture* at(double time) = 0;
};

} // namespace tarnwick
