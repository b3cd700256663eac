// What a saver is shown on: a window of X11 or a surface of Wayland.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Layer.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "saver/Geometry.h"

#include <memory>
#include <string>

namespace tarnwick {

// One thread at a time.
class HostSurface {
  public:
    // The events since the last call.
    struct News {
        bool resized = false; // size() is new
        bool exposed = false; // its picture must be shown again
    };

    virtual ~HostSurface() = default;
    HostSurface(const HostSurface&) = delete;
    HostSurface& operator=(const HostSurface&) = delete;

    // Presents frames on it. Null if the device cannot; frames are then shown as pictures.
    virtual std::unique_ptr<gpu::Layer> newLayer(gpu::Device& device) = 0;
    virtual int connection() const = 0;        // readable if there may be events
    virtual const PixelSize& size() const = 0; // pixels

    // It was destroyed or closed, the display went away, or it covers a screen and the user is
    // back.
    virtual bool isGone() const = 0;
    // The display went away without being asked to.
    virtual bool hasLostDisplay() const = 0;
    // Whether it looks like the small picture in the settings of another program.
    virtual bool isPreview() const = 0;
    // A window in which somebody plays, not a screen saver's.
    virtual bool isOwn() const = 0;
    // Whether people can see a new frame.
    virtual bool isVisible() const = 0;

    // Never blocks.
    virtual News readNews() = 0;
    // Seconds that the host may wait for connection() before it asks for news: drivers read the
    // connection too and may receive our events.
    virtual double longestWait() const { return 0.1; }
    // A frame is drawn next.
    virtual void willDraw() {}
    // The title of a window of its own.
    virtual void setTitle(const std::string& title) = 0;
    // Shows a picture of its size.
    virtual void show(const Picture& picture) = 0;

  protected:
    HostSurface() = default;
};

} // namespace tarnwick
