// A target on a surface that the platform may destroy at any moment.
#pragma once

#include "TarnwickRender/Targets/FrameTarget.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace tarnwick::player {

// The window's thread closes the surface before the platform destroys it, while the drawing thread
// may be in a frame of many seconds. Shared by both.
class SurfaceState {
  public:
    // Nothing is presented after this call. Waits for a presentation, at most a second.
    void close();
    // The surface is destroyed: its target cannot be destroyed in order any more and is left to the
    // system.
    void abandon() { state_ = State::gone; }

  private:
    friend class ClosableTarget;
    enum class State : std::uint8_t { open, closed, gone };

    std::timed_mutex mutex_; // held while the surface is used
    std::atomic<State> state_ = State::open;
};

class ClosableTarget final : public FrameTarget {
  public:
    ClosableTarget(std::unique_ptr<FrameTarget> target, std::shared_ptr<SurfaceState> surface);
    ~ClosableTarget() override;

    void resize(const PixelSize& size) override;
    bool waitForRoom(double seconds) override;
    const gpu::Texture* nextTexture() override;
    void present(gpu::CommandBuffer commands) override;

  private:
    bool isOpen() const { return surface_->state_ == SurfaceState::State::open; }

    std::unique_ptr<FrameTarget> target_;
    std::shared_ptr<SurfaceState> surface_;
};

} // namespace tarnwick::player
