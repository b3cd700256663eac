#include "saver/HostWindow.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "saver/HostError.h"
#include "saver/MonitorCover.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/dpms.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace tarnwick {
namespace {

// Buttons and redirections of a window belong to one client alone, so none are requested.
constexpr long foreignEvents = StructureNotifyMask | ExposureMask | VisibilityChangeMask;
constexpr long ownEvents = foreignEvents | KeyPressMask;

struct FreedByX {
    void operator()(void* memory) const { XFree(memory); }
};

std::string hexadecimal(unsigned long number) {
    std::ostringstream text;
    text << std::hex << std::showbase << number;
    return text.str();
}

// The child of `root` that names itself the virtual root, or `root`.
Window virtualRoot(Display* display, Window root) {
    const Atom property = XInternAtom(display, "__SWM_VROOT", False);
    Window actualRoot = 0, parent = 0, *list = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, root, &actualRoot, &parent, &list, &count) == 0)
        return root;
    const std::unique_ptr<Window, FreedByX> children(list);
    for (unsigned index = 0; index < count; ++index) {
        Atom type = 0;
        int format = 0;
        unsigned long items = 0, left = 0;
        unsigned char* bytes = nullptr;
        const int status = XGetWindowProperty(display, list[index], property, 0, 1, False,
                                              XA_WINDOW, &type, &format, &items, &left, &bytes);
        const std::unique_ptr<unsigned char, FreedByX> value(bytes);
        if (status == Success && type == XA_WINDOW && format == 32 && items == 1) {
            Window window = 0;
            std::memcpy(&window, bytes, sizeof window);
            return window;
        }
    }
    return root;
}

bool hasProperty(Display* display, Window window, const char* name) {
    const Atom property = XInternAtom(display, name, True);
    int count = 0;
    const std::unique_ptr<Atom, FreedByX> all(XListProperties(display, window, &count));
    return property != None && std::count(all.get(), all.get() + count, property) > 0;
}

// Whether a window is within a window of a program that people see as a window: the settings. A
// window within a cover of the screen, as mate-screensaver makes it, is not: window managers do not
// manage covers (ICCCM 2.0, 4.1.10), and mark what they manage with WM_STATE (4.1.3.1).
bool isWithinWindow(Display* display, Window window) {
    Window outermost = 0;
    for (Window at = window;;) {
        Window root = 0, parent = 0, *list = nullptr;
        unsigned count = 0;
        if (XQueryTree(display, at, &root, &parent, &list, &count) == 0 || at == root)
            return false;
        const std::unique_ptr<Window, FreedByX> children(list);
        if (at != window && hasProperty(display, at, "WM_STATE"))
            return true;
        if (parent == root)
            outermost = at;
        if (outermost != 0)
            break;
        at = parent;
    }
    XWindowAttributes attributes{};
    return outermost != window && XGetWindowAttributes(display, outermost, &attributes) != 0 &&
           attributes.override_redirect == False;
}

// A colour channel of 8 bits, shifted to the bits of a visual's mask.
unsigned long channel(std::uint8_t value, unsigned long mask) {
    if (mask == 0)
        return 0;
    const unsigned long lowest = mask & (~mask + 1);
    return (value * (mask / lowest) + 127) / 255 * lowest;
}

// Whether its pixels are bytes of blue, green, red and nothing, as in a picture.
bool hasPictureFormat(const XImage& image) {
    return image.bits_per_pixel == 32 && image.byte_order == LSBFirst &&
           image.red_mask == 0xff0000 && image.green_mask == 0xff00 && image.blue_mask == 0xff;
}

// Copies a picture of the same size, in the format of the image's visual.
void fill(XImage& image, const Picture& picture) {
    const auto rowBytes = static_cast<std::size_t>(image.bytes_per_line);
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        const std::uint8_t* row = &picture.bytes[y * picture.bytesPerRow];
        if (hasPictureFormat(image)) {
            std::memcpy(image.data + y * rowBytes, row, std::size_t{4} * picture.width);
            continue;
        }
        for (std::uint32_t x = 0; x < picture.width; ++x, row += 4)
            XPutPixel(&image, static_cast<int>(x), static_cast<int>(y),
                      channel(row[2], image.red_mask) | channel(row[1], image.green_mask) |
                          channel(row[0], image.blue_mask));
    }
}

} // namespace

struct HostWindow::Parts {
    Display* display = nullptr;
    Window window = 0;
    Visual* visual = nullptr;
    int depth = 0;
    bool isOwn = false;
    bool isPreview = false;
    bool isMapped = false;
    bool isCovered = false;
    bool isScreenOff = false;
    std::optional<MonitorCover> cover;
    double screenLook = 0; // seconds of the host clock: of isScreenOff
    bool isGone = false;   // or is lost
    bool isLost = false;   // the connection
    PixelSize size;
    Atom protocols = 0, deleteWindow = 0;

    explicit Parts(Display* opened) : display(opened) {
        protocols = XInternAtom(display, "WM_PROTOCOLS", False);
        deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    }
    ~Parts() {
        if (!isLost) // Xlib complains on standard error where it cannot write its last requests
            XCloseDisplay(display);
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    void choose(const WindowChoice& choice);
    void makeOwn(const PixelSize& wanted);
    void makeCover(unsigned monitor);
    void adopt();
    void take(XEvent& event, News& news);
    void lookAtScreen();
};

void HostWindow::Parts::choose(const WindowChoice& choice) {
    if (choice.monitor)
        makeCover(*choice.monitor);
    else if (choice.id)
        window = *choice.id;
    else if (const char* given = std::getenv("XSCREENSAVER_WINDOW"); given != nullptr && *given)
        window = std::strtoul(given, nullptr, 0);
    else if (choice.root)
        window = virtualRoot(display, DefaultRootWindow(display));
    else
        makeOwn(choice.ownSize);
    adopt();
    if (cover)
        cover->show();
}

void HostWindow::Parts::makeOwn(const PixelSize& wanted) {
    isOwn = true;
    window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, wanted.width,
                                 wanted.height, 0, 0, BlackPixel(display, DefaultScreen(display)));
    XSetWMProtocols(display, window, &deleteWindow, 1);
}

void HostWindow::Parts::makeCover(unsigned monitor) {
    cover.emplace(display, monitor);
    window = cover->window();
    isOwn = true;
}

// Selects events before it reads the window's state, so no change is missed.
void HostWindow::Parts::adopt() {
    XSelectInput(display, window, isOwn ? ownEvents : foreignEvents);
    if (isOwn)
        XMapWindow(display, window);
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, window, &attributes) == 0)
        throw HostError("There is no window " + hexadecimal(window) + " on this display.");
    visual = attributes.visual;
    depth = attributes.depth;
    isPreview = !isOwn && isWithinWindow(display, window);
    isMapped = isOwn || attributes.map_state != IsUnmapped;
    size = {static_cast<std::uint32_t>(attributes.width),
            static_cast<std::uint32_t>(attributes.height)};
}

void HostWindow::Parts::take(XEvent& event, News& news) {
    if (cover)
        cover->take(event);
    switch (event.type) {
    case ConfigureNotify: {
        const PixelSize now{static_cast<std::uint32_t>(event.xconfigure.width),
                            static_cast<std::uint32_t>(event.xconfigure.height)};
        news.resized |= now != size;
        size = now;
        break;
    }
    case Expose:
        news.exposed |= event.xexpose.count == 0;
        break;
    case MapNotify:
        isMapped = true;
        break;
    case UnmapNotify:
        isMapped = false;
        break;
    case VisibilityNotify:
        isCovered = event.xvisibility.state == VisibilityFullyObscured;
        break;
    case DestroyNotify:
        isGone = true;
        break;
    case ClientMessage:
        isGone |= event.xclient.message_type == protocols &&
                  static_cast<Atom>(event.xclient.data.l[0]) == deleteWindow;
        break;
    case KeyPress: {
        const KeySym key = XLookupKeysym(&event.xkey, 0);
        isGone |= key == XK_Escape || key == XK_q;
        break;
    }
    default:
        break;
    }
}

// The server sends no event when the screen is switched off.
void HostWindow::Parts::lookAtScreen() {
    constexpr double interval = 1; // seconds
    const double now = currentMediaTime();
    if (isGone || now - screenLook < interval)
        return;
    screenLook = now;
    int event = 0, error = 0;
    CARD16 level = DPMSModeOn;
    BOOL isEnabled = False;
    isScreenOff = DPMSQueryExtension(display, &event, &error) != 0 &&
                  DPMSInfo(display, &level, &isEnabled) != 0 && isEnabled != 0 &&
                  level != DPMSModeOn;
}

unsigned HostWindow::monitorCount() {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr)
        return 0;
    const auto count = static_cast<unsigned>(monitorsOf(display).size());
    XCloseDisplay(display);
    return count;
}

bool HostWindow::hasDisplay() {
    Display* display = XOpenDisplay(nullptr);
    if (display != nullptr)
        XCloseDisplay(display);
    return display != nullptr;
}

HostWindow::HostWindow(const WindowChoice& choice) {
    // The drivers use the connection from threads of their own.
    XInitThreads();
    // Another program may destroy its window at any time: later requests must not end the process,
    // as they do by default. DestroyNotify reports it.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    XSetIOErrorHandler([](Display*) { return 0; });
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        const char* name = std::getenv("DISPLAY");
        throw HostError(name != nullptr && *name
                            ? "The display " + std::string(name) + " cannot be opened."
                            : std::string("There is no display: DISPLAY is not set."));
    }
    parts_ = std::make_unique<Parts>(display);
    XSetIOErrorExitHandler(
        display,
        [](Display*, void* data) {
            auto& parts = *static_cast<Parts*>(data);
            parts.isGone = parts.isLost = true;
        },
        parts_.get());
    parts_->choose(choice);
}

HostWindow::~HostWindow() = default;

std::unique_ptr<gpu::Layer> HostWindow::newLayer(gpu::Device& device) {
    // Without Present (servers with Xinerama, old ones over the network), Mesa's drivers end the
    // connection.
    int opcode = 0, event = 0, error = 0;
    if (XQueryExtension(parts_->display, "Present", &opcode, &event, &error) == 0)
        return nullptr;
    return device.newLayer(parts_->display, parts_->window);
}

int HostWindow::connection() const {
    return ConnectionNumber(parts_->display);
}

const PixelSize& HostWindow::size() const {
    return parts_->size;
}

bool HostWindow::isGone() const {
    return parts_->isGone;
}

bool HostWindow::hasLostDisplay() const {
    return parts_->isLost;
}

bool HostWindow::isPreview() const {
    return parts_->isPreview;
}

bool HostWindow::isOwn() const {
    return parts_->isOwn && !parts_->cover;
}

bool HostWindow::isVisible() const {
    return parts_->isMapped && !parts_->isCovered && !parts_->isScreenOff;
}

HostSurface::News HostWindow::readNews() {
    News news;
    while (!parts_->isGone && XPending(parts_->display) > 0) {
        XEvent event;
        XNextEvent(parts_->display, &event);
        parts_->take(event, news);
    }
    parts_->lookAtScreen();
    if (!parts_->isGone && parts_->cover)
        parts_->isGone = parts_->cover->isEnded();
    return news;
}

void HostWindow::setTitle(const std::string& title) {
    if (!parts_->isOwn)
        return;
    Xutf8SetWMProperties(parts_->display, parts_->window, title.c_str(), title.c_str(), nullptr, 0,
                         nullptr, nullptr, nullptr);
}

void HostWindow::show(const Picture& picture) {
    XImage* image =
        XCreateImage(parts_->display, parts_->visual, static_cast<unsigned>(parts_->depth), ZPixmap,
                     0, nullptr, picture.width, picture.height, 32, 0);
    if (image == nullptr)
        return;
    image->data = static_cast<char*>(
        std::malloc(static_cast<std::size_t>(image->bytes_per_line) * picture.height));
    if (image->data != nullptr) {
        fill(*image, picture);
        GC context = XCreateGC(parts_->display, parts_->window, 0, nullptr);
        XPutImage(parts_->display, parts_->window, context, image, 0, 0, 0, 0, picture.width,
                  picture.height);
        XFreeGC(parts_->display, context);
        XFlush(parts_->display);
    }
    XDestroyImage(image); // frees its data as well
}

} // namespace tarnwick
