#include "saver/MonitorCover.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <X11/extensions/Xrandr.h>
#include <X11/extensions/scrnsaver.h>

#include <memory>

namespace tarnwick {
namespace {

constexpr double interval = 0.1; // seconds between two looks for input
constexpr double grace = 0.5;    // seconds: the release of the key that started the saver

struct FreedByX {
    void operator()(void* memory) const { XFree(memory); }
};

// Milliseconds since the last input (MIT-SCREEN-SAVER 1.1); 0 if the server does not know.
unsigned long idleTime(Display* display) {
    int event = 0, error = 0;
    const std::unique_ptr<XScreenSaverInfo, FreedByX> info(XScreenSaverAllocInfo());
    if (!info || XScreenSaverQueryExtension(display, &event, &error) == 0 ||
        XScreenSaverQueryInfo(display, DefaultRootWindow(display), info.get()) == 0)
        return 0;
    return info->idle;
}

Cursor noCursor(Display* display, Window window) {
    const char none = 0;
    const Pixmap empty = XCreateBitmapFromData(display, window, &none, 1, 1);
    XColor black{};
    const Cursor cursor = XCreatePixmapCursor(display, empty, empty, &black, &black, 0, 0);
    XFreePixmap(display, empty);
    return cursor;
}

} // namespace

std::vector<MonitorPlace> monitorsOf(Display* display) {
    std::vector<MonitorPlace> places;
    int event = 0, error = 0, count = 0;
    if (XRRQueryExtension(display, &event, &error) != 0) {
        XRRMonitorInfo* monitors =
            XRRGetMonitors(display, DefaultRootWindow(display), True, &count);
        for (int i = 0; monitors != nullptr && i < count; ++i)
            places.push_back({monitors[i].x, monitors[i].y,
                              static_cast<unsigned>(monitors[i].width),
                              static_cast<unsigned>(monitors[i].height)});
        if (monitors != nullptr)
            XRRFreeMonitors(monitors);
    }
    if (places.empty()) {
        const int screen = DefaultScreen(display);
        places.push_back({0, 0, static_cast<unsigned>(DisplayWidth(display, screen)),
                          static_cast<unsigned>(DisplayHeight(display, screen))});
    }
    return places;
}

MonitorCover::MonitorCover(Display* display, unsigned monitor)
    : display_(display), monitor_(monitor) {
    const std::vector<MonitorPlace> monitors = monitorsOf(display);
    isMonitorGone_ = monitor >= monitors.size();
    place_ = monitors[isMonitorGone_ ? 0 : monitor];
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = BlackPixel(display, DefaultScreen(display));
    window_ = XCreateWindow(display, DefaultRootWindow(display), place_.x, place_.y, place_.width,
                            place_.height, 0, CopyFromParent, InputOutput, nullptr,
                            CWOverrideRedirect | CWBackPixel, &attributes);
    int error = 0;
    if (XRRQueryExtension(display, &changeEvent_, &error) != 0)
        XRRSelectInput(display, DefaultRootWindow(display), RRScreenChangeNotifyMask);
}

// Other programs may hold keyboard or pointer, for example with an open menu.
void MonitorCover::show() {
    const Cursor none = noCursor(display_, window_);
    XDefineCursor(display_, window_, none);
    XMapRaised(display_, window_);
    XSync(display_, False);
    XGrabKeyboard(display_, window_, True, GrabModeAsync, GrabModeAsync, CurrentTime);
    XGrabPointer(display_, window_, True, ButtonPressMask | PointerMotionMask, GrabModeAsync,
                 GrabModeAsync, None, none, CurrentTime);
    idle_ = idleTime(display_);
    shown_ = currentMediaTime();
}

void MonitorCover::take(XEvent& event) {
    if (event.type == changeEvent_ + RRScreenChangeNotify) {
        XRRUpdateConfiguration(&event);
        followMonitor();
    }
    isUserBack_ |= event.type == KeyPress || event.type == ButtonPress;
}

void MonitorCover::followMonitor() {
    const std::vector<MonitorPlace> monitors = monitorsOf(display_);
    isMonitorGone_ = monitor_ >= monitors.size();
    if (isMonitorGone_ || monitors[monitor_] == place_)
        return;
    place_ = monitors[monitor_];
    XMoveResizeWindow(display_, window_, place_.x, place_.y, place_.width, place_.height);
}

bool MonitorCover::isEnded() {
    const double now = currentMediaTime();
    if (now - look_ >= interval) {
        look_ = now;
        const unsigned long idle = idleTime(display_);
        isUserBack_ |= idle < idle_;
        idle_ = idle;
    }
    if (now - shown_ < grace)
        isUserBack_ = false;
    return isMonitorGone_ || isUserBack_;
}

} // namespace tarnwick
