// The destination of a view's frames: a window, or pictures off screen.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/Targets/FramesInFlight.h"
#include "TarnwickBase/PixelSize.h"

#include <cstddef>

namespace tarnwick {

// One frame at a time: wait for room, take nextTexture, draw into it, present. A frame that is
// taken and not presented is discarded by the next call of one of the other two.
class FrameTarget {
  public:
    virtual ~FrameTarget() = default;

    // Sets the size of the frames that begin after this call.
    virtual void resize(const PixelSize& size) = 0;

    // Waits at most that many seconds until nextTexture() does not wait for frames in flight.
    // Returns whether that is so.
    virtual bool waitForRoom(double seconds) { return frames.waitForRoom(seconds); }

    // The texture for the next frame (bgra8Unorm), owned by the target until it is presented.
    // Null while none is free.
    virtual const gpu::Texture* nextTexture() = 0;

    // Commits `commands`, which draw the frame, and shows it once they are done.
    virtual void present(gpu::CommandBuffer commands) = 0;

    FramesInFlight frames;

  protected:
    explicit FrameTarget(std::size_t mostInFlight) : frames(mostInFlight) {}
};

} // namespace tarnwick
