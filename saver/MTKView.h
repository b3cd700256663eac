// A view that a GPU draws into, frame by frame, through its delegate.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Format.h"
#include "saver/FrameTarget.h"
#include "saver/Geometry.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick {

namespace gpu {
class Device;
}
class MTKView;

class MTKViewDelegate {
  public:
    // The view's drawables will have `size` (pixels) from the next frame on.
    virtual void mtkViewDrawableSizeWillChange(MTKView& view, const PixelSize& size) = 0;
    virtual void drawInMTKView(MTKView& view) = 0;

  protected:
    ~MTKViewDelegate() = default;
};

// How a view follows the one around it.
struct AutoresizingMask {
    bool widthSizable = false;
    bool heightSizable = false;
};

enum class ColorSpace : std::uint8_t { sRGB };

// One thread at a time. The host gives it its target and calls draw() at the preferred rate.
class MTKView {
  public:
    // `frame` is in points, of which each is one pixel here.
    MTKView(const Rectangle& frame, std::shared_ptr<gpu::Device> device)
        : frame_(frame), device_(std::move(device)) {}

    AutoresizingMask autoresizingMask;
    gpu::PixelFormat colorPixelFormat = gpu::PixelFormat::bgra8Unorm; // the only one presented
    ColorSpace colorspace = ColorSpace::sRGB;
    int preferredFramesPerSecond = 60;
    MTKViewDelegate* delegate = nullptr; // borrowed

    gpu::Device* device() const { return device_.get(); }
    const Rectangle& frame() const { return frame_; }

    // Where the frames go from now on; they have the view's size.
    void setTarget(std::unique_ptr<FrameTarget> target);

    // The view around this one has a new size. Where the mask says so this view follows it, which
    // the delegate hears of.
    void superviewDidResize(const Rectangle& bounds);

    // One frame: calls the delegate's drawInMTKView. Blocks while there is no room for one.
    void draw();

    // Waits until the target has room for a frame, at most so many seconds; whether it has. Frames
    // that were drawn meanwhile are shown.
    bool waitForRoom(double seconds) { return target_->waitForRoom(seconds); }
    // Waits until all frames are drawn, at most so many seconds; whether they are.
    bool waitUntilDrawn(double seconds) { return target_->frames.waitUntilDrawn(seconds); }
    // Whether the frames take too long to be shown (FrameTimes.h).
    bool framesTakeTooLong() const { return target_ && target_->frames.takeTooLong(); }

    // While the delegate draws a frame. Both take the frame's drawable when it is first asked for
    // and are absent when there is none.
    const gpu::Texture* currentDrawable();
    std::optional<gpu::RenderPassDescriptor> currentRenderPassDescriptor(); // clears to black

    // Commits `commands` and presents the current drawable once they are done.
    void present(gpu::CommandBuffer commands);

  private:
    Rectangle frame_;
    std::shared_ptr<gpu::Device> device_; // shared with the objects made from it
    std::unique_ptr<FrameTarget> target_;
    const gpu::Texture* drawable_ = nullptr; // owned by the target
};

} // namespace tarnwick
