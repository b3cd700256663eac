// The host's interface to a screen saver: a view that knows its frame and whether it is the
// preview.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "saver/Geometry.h"
#include "saver/MTKView.h"

#include <cstdint>

namespace tarnwick {

// `preview` is the small picture in the settings of the host.
enum class ScreenKind : std::uint8_t { fullScreen, preview };

// One thread, the host's main thread, calls everything.
class ScreenSaverView {
  public:
    virtual ~ScreenSaverView() = default;
    ScreenSaverView(const ScreenSaverView&) = delete;
    ScreenSaverView& operator=(const ScreenSaverView&) = delete;

    const Rectangle& frame() const { return frame_; }
    Rectangle bounds() const { return {0, 0, frame_.width, frame_.height}; }
    bool isPreview() const { return kind_ == ScreenKind::preview; }

    // The host gives the view another size; its subview follows.
    void setFrame(const Rectangle& frame) {
        frame_ = frame;
        if (subview_ != nullptr)
            subview_->superviewDidResize(bounds());
    }

    // Seconds between two calls of animateOneFrame.
    double animationTimeInterval() const { return animationTimeInterval_; }

    virtual void animateOneFrame() = 0;
    // Draws the background behind the subview into `picture`, which covers the bounds.
    virtual void drawRect(Picture& picture) const = 0;
    virtual bool hasConfigureSheet() const = 0;
    // The window with the saver's settings; null without one.
    virtual void* configureSheet() const = 0;

  protected:
    ScreenSaverView(const Rectangle& frame, ScreenKind kind) : frame_(frame), kind_(kind) {}

    void setAnimationTimeInterval(double seconds) { animationTimeInterval_ = seconds; }
    void addSubview(MTKView& view) { subview_ = &view; }
    void removeSubview() { subview_ = nullptr; }

  private:
    Rectangle frame_;
    ScreenKind kind_;
    double animationTimeInterval_ = 1.0 / 30; // seconds
    MTKView* subview_ = nullptr;              // owned by the caller of addSubview
};

} // namespace tarnwick
