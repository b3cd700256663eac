// A view that a GPU draws into, frame by frame, through its delegate.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Format.h"
#include "TarnwickRender/Targets/FrameTarget.h"
#include "saver/Enlarger.h"
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

// How a view follows the size of the view around it.
struct AutoresizingMask {
    bool widthSizable = false;
    bool heightSizable = false;
};

enum class ColorSpace : std::uint8_t { sRGB };

// One thread at a time. The host gives it its target and calls draw() at the preferred rate.
class MTKView {
  public:
    // `frame` is in points. A point is a pixel here.
    MTKView(const Rectangle& frame, std::shared_ptr<gpu::Device> device)
        : frame_(frame), device_(std::move(device)) {}

    AutoresizingMask autoresizingMask;
    gpu::PixelFormat colorPixelFormat = gpu::PixelFormat::bgra8Unorm; // the only one presented
    ColorSpace colorspace = ColorSpace::sRGB;
    int preferredFramesPerSecond = 60;
    double longestFrame = FrameTimes::defaultLongestFrame; // seconds, of targets set after it
    MTKViewDelegate* delegate = nullptr;                   // borrowed

    gpu::Device* device() const { return device_.get(); }
    const Rectangle& frame() const { return frame_; }

    // Sets the destination of the frames, which have the view's size.
    void setTarget(std::unique_ptr<FrameTarget> target);

    // The view around this one has a new size. If the mask says so, this view follows it and calls
    // the delegate.
    void superviewDidResize(const Rectangle& bounds);

    // Draws the next frames smaller than the view by this factor of both sides, in (0, 1], and
    // enlarges them. Calls the delegate if that changes the size. Default: 1.
    void setDrawableScale(double scale);

    // One frame: calls the delegate's drawInMTKView. Blocks while there is no room for one.
    void draw();

    // Waits at most that many seconds until the target has room for a frame. Returns whether it
    // has. Shows frames that were drawn meanwhile.
    bool waitForRoom(double seconds) { return target_->waitForRoom(seconds); }
    // Waits at most that many seconds until all frames are drawn. Returns whether they are.
    bool waitUntilDrawn(double seconds) { return target_->frames.waitUntilDrawn(seconds); }
    // Whether the frames take too long to be shown (FrameTimes.h).
    bool framesTakeTooLong() const { return target_ && target_->frames.takeTooLong(); }

    // Leaves out what the GPU has not begun of the frames in flight.
    void abandonFrames() {
        if (target_)
            target_->frames.abandon();
    }

    // For the delegate while it draws a frame. The first call of either takes the frame's drawable.
    // Absent if there is no drawable.
    const gpu::Texture* currentDrawable();
    std::optional<gpu::RenderPassDescriptor> currentRenderPassDescriptor(); // clears to black

    // Commits `commands` and presents the current drawable once they are done.
    void present(gpu::CommandBuffer commands);

  private:
    PixelSize drawableSize() const;

    Rectangle frame_;
    std::shared_ptr<gpu::Device> device_; // shared with the objects made from it
    std::unique_ptr<FrameTarget> target_;
    const gpu::Texture* drawable_ = nullptr; // owned by the target
    const gpu::Texture* smaller_ = nullptr;  // owned by the enlarger; null at the scale 1
    std::unique_ptr<Enlarger> enlarger_;     // made for the first smaller frame
    double scale_ = 1;
};

} // namespace tarnwick
