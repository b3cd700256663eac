// The X11 window that a saver is shown in: its own, one that it is given, or the root window.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "saver/Geometry.h"

#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

// Which window to show in. The first that is there: `id`, the environment's XSCREENSAVER_WINDOW,
// the root window where `root` says so (a virtual root, named by the property __SWM_VROOT, stands
// for it), a window of our own.
struct WindowChoice {
    std::optional<unsigned long> id; // of an X11 window
    bool root = false;
    PixelSize ownSize{1280, 720}; // of a window of our own
};

// One thread at a time.
class HostWindow {
  public:
    // What happened since the last look.
    struct News {
        bool resized = false; // size() is new
        bool exposed = false; // its picture must be shown again
    };

    // Whether $DISPLAY names an X11 display that answers.
    static bool hasDisplay();

    // Throws HostError when no display can be opened or the window does not exist.
    explicit HostWindow(const WindowChoice& choice);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    void* display() const;         // an Xlib Display*, for gpu::Device::newLayer
    unsigned long window() const;  // its id
    int connection() const;        // readable when news may have come
    const PixelSize& size() const; // pixels

    // The window was destroyed or closed, or the display went away.
    bool isGone() const;
    // Whether it looks like the small picture in the settings of another program: a window that was
    // given, which lies within another one and has less than half of the screen's width and height.
    // (XScreenSaver says nothing else about it.)
    bool isPreview() const;
    // Mapped and not wholly covered.
    bool isVisible() const;

    // Never blocks.
    News readNews();
    // What a window manager shows above a window of our own.
    void setTitle(const std::string& title);
    // Shows a picture of the window's size.
    void show(const Picture& picture);

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace tarnwick
