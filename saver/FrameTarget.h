// Where a view's frames go: a window, or pictures off screen.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "saver/FramesInFlight.h"
#include "saver/Geometry.h"

#include <cstddef>

namespace tarnwick {

// One frame at a time: wait for room, take nextTexture, draw into it, present. A frame that is
// taken and not presented goes back unshown with the next call of either of the others.
class FrameTarget {
  public:
    virtual ~FrameTarget() = default;

    // The frames that are begun from now on have this size.
    virtual void resize(const PixelSize& size) = 0;

    // Waits until nextTexture() need not wait for frames in flight, at most so many seconds;
    // whether it need not.
    virtual bool waitForRoom(double seconds) { return frames.waitForRoom(seconds); }

    // What the next frame is drawn into (bgra8Unorm), owned by the target until it is presented.
    // Null while there is nothing to draw into.
    virtual const gpu::Texture* nextTexture() = 0;

    // Commits `commands`, which draw the frame, and shows it once they are done.
    virtual void present(gpu::CommandBuffer commands) = 0;

    FramesInFlight frames;

  protected:
    explicit FrameTarget(std::size_t mostInFlight) : frames(mostInFlight) {}
};

} // namespace tarnwick
