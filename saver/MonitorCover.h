// A window that covers one monitor of X11 until the first input.
#pragma once

#include <X11/Xlib.h>

#include <vector>

namespace tarnwick {

// In pixels of the root window.
struct MonitorPlace {
    int x = 0, y = 0;
    unsigned width = 1, height = 1;

    bool operator==(const MonitorPlace&) const = default;
};

// The monitors (RandR 1.5); the whole screen if the server knows none. Not empty.
std::vector<MonitorPlace> monitorsOf(Display* display);

// One thread at a time. `display` must outlive it.
class MonitorCover {
  public:
    // Makes the window. A monitor that does not exist is ended.
    MonitorCover(Display* display, unsigned monitor);

    Window window() const { return window_; }
    // After the window is mapped: hides the pointer and takes keyboard and pointer.
    void show();
    // Follows the monitor's place.
    void take(XEvent& event);
    // The user is back, or the monitor is gone. Asks the server at most ten times per second.
    bool isEnded();

  private:
    void followMonitor();

    Display* display_;
    unsigned monitor_;
    Window window_ = 0;
    MonitorPlace place_;
    int changeEvent_ = -1; // number of RandR's event
    bool isMonitorGone_ = false;
    bool isUserBack_ = false;
    double shown_ = 0;       // seconds of the host clock
    double look_ = 0;        // seconds of the host clock
    unsigned long idle_ = 0; // milliseconds without input, at the last look
};

} // namespace tarnwick
