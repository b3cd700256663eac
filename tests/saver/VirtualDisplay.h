// A virtual X11 display of a test's own, and what a test does on it.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "saver/Geometry.h"

#include <sys/types.h>

#include <array>
#include <optional>
#include <string>

namespace tarnwick {

// Ends with the object. 640 x 480 pixels, without a window manager.
class VirtualDisplay {
  public:
    VirtualDisplay();
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    const std::string& name() const { return name_; } // for DISPLAY
    void end();                                       // as if the server had crashed

    unsigned long root() const;
    // Mapped, of this test's client, within another window, or the root.
    unsigned long makeWindow(const Rectangle& frame, unsigned long parent = 0);
    // The same, unmanaged by window managers, as a screen saver covers the screen.
    unsigned long makeCover(const Rectangle& frame);
    void destroyWindow(unsigned long window);
    void resizeWindow(unsigned long window, const PixelSize& size);
    void nameVirtualRoot(unsigned long window);
    void askToClose(unsigned long window); // as a window manager does
    // The window that another client shows on the root; waits until there is one.
    std::optional<unsigned long> waitForWindow();
    PixelSize windowSize(unsigned long window);
    std::string windowTitle(unsigned long window);
    // Whether another client gets events from the window beyond those of its place and visibility.
    bool othersAskForInput(unsigned long window);
    // What a window shows now. No pixels if it shows nothing.
    Picture picture(unsigned long window);
    // Red, green and blue in 0..255 of a window's pixel.
    std::array<int, 3> pixel(unsigned long window, int x, int y);

  private:
    std::string name_;
    pid_t server_ = 0;
    void* display_ = nullptr; // Xlib's
};

} // namespace tarnwick
