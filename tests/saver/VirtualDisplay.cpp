#include "tests/saver/VirtualDisplay.h"

#include "TarnwickBase/Precondition.h"
#include "tests/Waiting.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <csignal>
#include <cstring>
#include <span>
#include <unistd.h>

namespace tarnwick {
namespace {

Display* xlib(void* display) {
    return static_cast<Display*>(display);
}

// Starts a server that chooses a free number for itself and writes it to a pipe.
pid_t startServer(int& numberPipe) {
    int ends[2] = {};
    precondition(pipe(ends) == 0, "A test has room for a pipe.");
    const pid_t server = fork();
    if (server == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(ends[1], 3);
        execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "640x480x24", "-nolisten", "tcp",
               "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(ends[1]);
    numberPipe = ends[0];
    return server;
}

} // namespace

VirtualDisplay::VirtualDisplay() {
    int numberPipe = -1;
    server_ = startServer(numberPipe);
    name_ = ":";
    for (char digit = 0; read(numberPipe, &digit, 1) == 1 && digit != '\n';)
        name_ += digit;
    close(numberPipe);
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    display_ = XOpenDisplay(name_.c_str());
    precondition(display_ != nullptr, "Xvfb is installed: scripts/packages.txt lists it.");
}

VirtualDisplay::~VirtualDisplay() {
    end();
}

void VirtualDisplay::end() {
    if (display_ != nullptr)
        XCloseDisplay(xlib(display_));
    display_ = nullptr;
    if (server_ > 0) {
        kill(server_, SIGKILL);
        waitpid(server_, nullptr, 0);
    }
    server_ = 0;
    unlink(("/tmp/.X" + name_.substr(1) + "-lock").c_str());
    unlink(("/tmp/.X11-unix/X" + name_.substr(1)).c_str());
}

unsigned long VirtualDisplay::root() const {
    return DefaultRootWindow(xlib(display_));
}

unsigned long VirtualDisplay::makeWindow(const Rectangle& frame, unsigned long parent) {
    const PixelSize size = frame.pixels();
    const Window window = XCreateSimpleWindow(xlib(display_), parent != 0 ? parent : root(),
                                              static_cast<int>(frame.x), static_cast<int>(frame.y),
                                              size.width, size.height, 0, 0, 0x00FF00);
    XMapWindow(xlib(display_), window);
    XSync(xlib(display_), False);
    return window;
}

unsigned long VirtualDisplay::makeCover(const Rectangle& frame) {
    const Window window = makeWindow(frame);
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    XChangeWindowAttributes(xlib(display_), window, CWOverrideRedirect, &attributes);
    XSync(xlib(display_), False);
    return window;
}

void VirtualDisplay::destroyWindow(unsigned long window) {
    XDestroyWindow(xlib(display_), window);
    XSync(xlib(display_), False);
}

void VirtualDisplay::resizeWindow(unsigned long window, const PixelSize& size) {
    XResizeWindow(xlib(display_), window, size.width, size.height);
    XSync(xlib(display_), False);
}

void VirtualDisplay::nameVirtualRoot(unsigned long window) {
    XChangeProperty(xlib(display_), window, XInternAtom(xlib(display_), "__SWM_VROOT", False),
                    XA_WINDOW, 32, PropModeReplace, reinterpret_cast<unsigned char*>(&window), 1);
    XSync(xlib(display_), False);
}

void VirtualDisplay::askToClose(unsigned long window) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(xlib(display_), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(xlib(display_), "WM_DELETE_WINDOW", False));
    XSendEvent(xlib(display_), window, False, NoEventMask, &event);
    XSync(xlib(display_), False);
}

std::optional<unsigned long> VirtualDisplay::waitForWindow() {
    std::optional<unsigned long> found;
    eventually([&] {
        Window actualRoot = 0, parent = 0, *children = nullptr;
        unsigned count = 0;
        XQueryTree(xlib(display_), root(), &actualRoot, &parent, &children, &count);
        for (const Window window : std::span(children, count)) {
            XWindowAttributes attributes{};
            if (XGetWindowAttributes(xlib(display_), window, &attributes) != 0 &&
                attributes.map_state == IsViewable && !found)
                found = window;
        }
        if (children != nullptr)
            XFree(children);
        return found.has_value();
    });
    return found;
}

PixelSize VirtualDisplay::windowSize(unsigned long window) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(xlib(display_), window, &attributes);
    return {static_cast<std::uint32_t>(attributes.width),
            static_cast<std::uint32_t>(attributes.height)};
}

std::string VirtualDisplay::windowTitle(unsigned long window) {
    char* name = nullptr;
    XFetchName(xlib(display_), window, &name);
    const std::string title = name != nullptr ? name : "";
    XFree(name);
    return title;
}

bool VirtualDisplay::othersAskForInput(unsigned long window) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(xlib(display_), window, &attributes);
    return (attributes.all_event_masks &
            ~(StructureNotifyMask | ExposureMask | VisibilityChangeMask)) != 0;
}

Picture VirtualDisplay::picture(unsigned long window) {
    const PixelSize size = windowSize(window);
    XImage* image =
        XGetImage(xlib(display_), window, 0, 0, size.width, size.height, AllPlanes, ZPixmap);
    if (image == nullptr)
        return {};
    Picture picture = blackPicture(size);
    for (std::uint32_t y = 0; y < size.height; ++y)
        for (std::uint32_t x = 0; x < size.width; ++x) {
            const unsigned long value = XGetPixel(image, static_cast<int>(x), static_cast<int>(y));
            std::uint8_t* pixel = &picture.bytes[y * picture.bytesPerRow + std::size_t{4} * x];
            pixel[0] = static_cast<std::uint8_t>(value);
            pixel[1] = static_cast<std::uint8_t>(value >> 8);
            pixel[2] = static_cast<std::uint8_t>(value >> 16);
        }
    XDestroyImage(image);
    return picture;
}

std::array<int, 3> VirtualDisplay::pixel(unsigned long window, int x, int y) {
    XImage* image = XGetImage(xlib(display_), window, x, y, 1, 1, AllPlanes, ZPixmap);
    if (image == nullptr)
        return {};
    const unsigned long value = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return {static_cast<int>(value >> 16 & 255), static_cast<int>(value >> 8 & 255),
            static_cast<int>(value & 255)};
}

} // namespace tarnwick
