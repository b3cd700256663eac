// The X11 window of a saver: its own, a given one, or the root window.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "saver/Geometry.h"

#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

// The window to use. The first of these that is given: `id`, XSCREENSAVER_WINDOW of the
// environment, the root window if `root` is true (a virtual root, named by the property
// __SWM_VROOT, replaces it), a new window.
struct WindowChoice {
    std::optional<unsigned long> id; // of an X11 window
    bool root = false;
    PixelSize ownSize{1280, 720}; // of a new window
};

// One thread at a time.
class HostWindow {
  public:
    // The events since the last call.
    struct News {
        bool resized = false; // size() is new
        bool exposed = false; // its picture must be shown again
    };

    // Whether $DISPLAY names an X11 display that answers.
    static bool hasDisplay();

    // Throws HostError if no display can be opened or the window does not exist.
    explicit HostWindow(const WindowChoice& choice);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    void* display() const;         // an Xlib Display*, for gpu::Device::newLayer
    unsigned long window() const;  // its id
    int connection() const;        // readable if there may be events
    const PixelSize& size() const; // pixels

    // The window was destroyed or closed, or the display went away.
    bool isGone() const;
    // Whether it looks like the small picture in the settings of another program: a given window
    // within a window that is not a cover of the screen. (XScreenSaver gives no other sign.)
    bool isPreview() const;
    // Made by the constructor, not by another program.
    bool isOwn() const;
    // Mapped and not fully covered, on a screen that is not switched off (DPMS 1.2).
    bool isVisible() const;

    // Never blocks.
    News readNews();
    // The title that a window manager shows for a new window.
    void setTitle(const std::string& title);
    // Shows a picture of the window's size.
    void show(const Picture& picture);

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace tarnwick
