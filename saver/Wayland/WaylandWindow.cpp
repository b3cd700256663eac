#include "saver/Wayland/WaylandWindow.h"

#include "TarnwickGPU/WaylandLayer.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "saver/HostError.h"
#include "saver/Wayland/WaylandInput.h"
#include "saver/Wayland/WaylandPicture.h"

#include <algorithm>
#include <cstdlib>
#include <layer-shell-client.h>
#include <poll.h>
#include <string_view>
#include <utility>
#include <vector>
#include <wayland-client.h>
#include <xdg-shell-client.h>

namespace tarnwick {
namespace {

std::string displayName() {
    const char* name = std::getenv("WAYLAND_DISPLAY");
    return name != nullptr ? name : "";
}

struct Output {
    wl_output* handle = nullptr;
    std::uint32_t number = 0; // of the registry
    int scale = 1;            // pixels per point
};

} // namespace

struct WaylandWindow::Parts {
    explicit Parts(const WaylandChoice& choice) : choice(choice) {}
    ~Parts();
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    void connect();
    void add(std::uint32_t number, std::string_view interface, std::uint32_t version);
    void makeSurface();
    void makeLayerSurface(wl_output* output);
    void makeWindow(wl_output* output);
    // Points; 0: as the surface likes.
    void configure(std::uint32_t width, std::uint32_t height);
    const Output* coveredOutput() const;

    WaylandChoice choice;
    wl_display* display = nullptr;
    wl_registry* registry = nullptr;
    wl_compositor* compositor = nullptr;
    wl_shm* memory = nullptr;
    xdg_wm_base* windows = nullptr;
    zwlr_layer_shell_v1* layers = nullptr;
    std::vector<std::unique_ptr<Output>> outputs; // listeners have their addresses
    WaylandInput input;

    wl_surface* surface = nullptr;
    xdg_surface* windowSurface = nullptr;
    xdg_toplevel* window = nullptr;
    zwlr_layer_surface_v1* layer = nullptr;
    std::unique_ptr<WaylandPicture> shown;
    wl_callback* frame = nullptr; // the compositor has not asked for the next frame yet
    double framed = 0;            // seconds of the host clock: of the last frame
    PixelSize size;               // pixels
    bool isConfigured = false, isResized = false, isGone = false;
};

WaylandWindow::Parts::~Parts() {
    if (display != nullptr)
        wl_display_disconnect(display); // with all objects
}

void WaylandWindow::Parts::add(std::uint32_t number, std::string_view interface,
                               std::uint32_t version) {
    static constexpr wl_output_listener outputEvents{
        .geometry = [](void*, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                       std::int32_t, const char*, const char*, std::int32_t) {},
        .mode = [](void*, wl_output*, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) {},
        .done = [](void*, wl_output*) {},
        .scale = [](void* data, wl_output*,
                    std::int32_t scale) { static_cast<Output*>(data)->scale = scale; },
    };
    static constexpr xdg_wm_base_listener windowsEvents{
        .ping = [](void*, xdg_wm_base* base,
                   std::uint32_t serial) { xdg_wm_base_pong(base, serial); },
    };
    const auto bind = [&](const wl_interface& kind, std::uint32_t most) {
        return wl_registry_bind(registry, number, &kind, std::min(version, most));
    };
    if (interface == wl_compositor_interface.name) {
        compositor = static_cast<wl_compositor*>(bind(wl_compositor_interface, 4));
    } else if (interface == wl_shm_interface.name) {
        memory = static_cast<wl_shm*>(bind(wl_shm_interface, 1));
    } else if (interface == xdg_wm_base_interface.name) {
        windows = static_cast<xdg_wm_base*>(bind(xdg_wm_base_interface, 1));
        xdg_wm_base_add_listener(windows, &windowsEvents, nullptr);
    } else if (interface == zwlr_layer_shell_v1_interface.name) {
        layers = static_cast<zwlr_layer_shell_v1*>(bind(zwlr_layer_shell_v1_interface, 1));
    } else if (interface == wl_seat_interface.name) {
        input.listen(static_cast<wl_seat*>(bind(wl_seat_interface, 1)));
    } else if (interface == wl_output_interface.name) {
        auto output = std::make_unique<Output>();
        output->number = number;
        output->handle = static_cast<wl_output*>(bind(wl_output_interface, 2));
        wl_output_add_listener(output->handle, &outputEvents, output.get());
        outputs.push_back(std::move(output));
    }
}

void WaylandWindow::Parts::connect() {
    static constexpr wl_registry_listener registryEvents{
        .global =
            [](void* data, wl_registry*, std::uint32_t number, const char* interface,
               std::uint32_t version) {
                static_cast<Parts*>(data)->add(number, interface, version);
            },
        .global_remove =
            [](void* data, wl_registry*, std::uint32_t number) {
                auto& parts = *static_cast<Parts*>(data);
                const Output* covered = parts.coveredOutput();
                parts.isGone |= parts.choice.output && covered && covered->number == number;
            },
    };
    display = wl_display_connect(nullptr);
    if (display == nullptr)
        throw HostError("The Wayland display " + displayName() + " cannot be opened.");
    registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &registryEvents, this);
    wl_display_roundtrip(display); // the globals
    wl_display_roundtrip(display); // their first events
}

const Output* WaylandWindow::Parts::coveredOutput() const {
    return choice.output && *choice.output < outputs.size() ? outputs[*choice.output].get()
                                                            : nullptr;
}

void WaylandWindow::Parts::configure(std::uint32_t width, std::uint32_t height) {
    const Output* covered = coveredOutput();
    const auto scale = static_cast<std::uint32_t>(
        covered != nullptr && wl_compositor_get_version(compositor) >= 3 ? covered->scale : 1);
    const PixelSize wanted{(width != 0 ? width : choice.ownSize.width) * scale,
                           (height != 0 ? height : choice.ownSize.height) * scale};
    if (scale > 1)
        wl_surface_set_buffer_scale(surface, static_cast<std::int32_t>(scale));
    isResized |= isConfigured && wanted != size;
    size = wanted;
    isConfigured = true;
}

void WaylandWindow::Parts::makeLayerSurface(wl_output* output) {
    static constexpr zwlr_layer_surface_v1_listener events{
        .configure =
            [](void* data, zwlr_layer_surface_v1* layer, std::uint32_t serial, std::uint32_t width,
               std::uint32_t height) {
                zwlr_layer_surface_v1_ack_configure(layer, serial);
                static_cast<Parts*>(data)->configure(width, height);
            },
        .closed = [](void* data,
                     zwlr_layer_surface_v1*) { static_cast<Parts*>(data)->isGone = true; },
    };
    constexpr std::uint32_t allEdges =
        ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
        ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
    layer = zwlr_layer_shell_v1_get_layer_surface(layers, surface, output,
                                                  ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "screensaver");
    zwlr_layer_surface_v1_add_listener(layer, &events, this);
    zwlr_layer_surface_v1_set_anchor(layer, allEdges);
    zwlr_layer_surface_v1_set_exclusive_zone(layer, -1); // also below panels
    zwlr_layer_surface_v1_set_keyboard_interactivity(layer, 1);
}

void WaylandWindow::Parts::makeWindow(wl_output* output) {
    static constexpr xdg_surface_listener surfaceEvents{
        .configure = [](void*, xdg_surface* made,
                        std::uint32_t serial) { xdg_surface_ack_configure(made, serial); },
    };
    static constexpr xdg_toplevel_listener windowEvents{
        .configure =
            [](void* data, xdg_toplevel*, std::int32_t width, std::int32_t height, wl_array*) {
                static_cast<Parts*>(data)->configure(
                    static_cast<std::uint32_t>(std::max(width, 0)),
                    static_cast<std::uint32_t>(std::max(height, 0)));
            },
        .close = [](void* data, xdg_toplevel*) { static_cast<Parts*>(data)->isGone = true; },
    };
    windowSurface = xdg_wm_base_get_xdg_surface(windows, surface);
    xdg_surface_add_listener(windowSurface, &surfaceEvents, this);
    window = xdg_surface_get_toplevel(windowSurface);
    xdg_toplevel_add_listener(window, &windowEvents, this);
    xdg_toplevel_set_app_id(window, "tarnwick-saver");
    if (choice.output)
        xdg_toplevel_set_fullscreen(window, output);
}

void WaylandWindow::Parts::makeSurface() {
    if (choice.output && coveredOutput() == nullptr)
        throw HostError("The display " + displayName() + " has " + std::to_string(outputs.size()) +
                        " screens, so there is no screen " + std::to_string(*choice.output) +
                        "; the first one is 0.");
    if (compositor == nullptr || (windows == nullptr && (layers == nullptr || !choice.output)))
        throw HostError("The display " + displayName() + " has no windows.");
    surface = wl_compositor_create_surface(compositor);
    wl_output* output = choice.output ? coveredOutput()->handle : nullptr;
    if (choice.output && layers != nullptr)
        makeLayerSurface(output);
    else
        makeWindow(output);
    wl_surface_commit(surface);
    while (!isConfigured && !isGone)
        if (wl_display_roundtrip(display) < 0)
            throw HostError("The display " + displayName() + " ended.");
}

unsigned WaylandWindow::outputCount() {
    Parts parts({});
    try {
        parts.connect();
    } catch (const HostError&) {
        return 0;
    }
    return static_cast<unsigned>(parts.outputs.size());
}

WaylandWindow::WaylandWindow(const WaylandChoice& choice)
    : parts_(std::make_unique<Parts>(choice)) {
    parts_->connect();
    parts_->makeSurface();
}

WaylandWindow::~WaylandWindow() = default;

std::unique_ptr<gpu::Layer> WaylandWindow::newLayer(gpu::Device& device) {
    return gpu::newWaylandLayer(device, parts_->display, parts_->surface);
}

int WaylandWindow::connection() const {
    return wl_display_get_fd(parts_->display);
}

const PixelSize& WaylandWindow::size() const {
    return parts_->size;
}

bool WaylandWindow::isGone() const {
    const bool isCover = parts_->choice.output.has_value();
    return parts_->isGone || hasLostDisplay() ||
           (isCover ? parts_->input.isUserBack() : parts_->input.askedToClose());
}

bool WaylandWindow::hasLostDisplay() const {
    return wl_display_get_error(parts_->display) != 0;
}

bool WaylandWindow::isOwn() const {
    return !parts_->choice.output;
}

bool WaylandWindow::isVisible() const {
    return parts_->isConfigured && parts_->frame == nullptr;
}

// The driver reads the same connection, into a queue of its own.
HostSurface::News WaylandWindow::readNews() {
    wl_display* display = parts_->display;
    while (wl_display_prepare_read(display) != 0)
        wl_display_dispatch_pending(display);
    wl_display_flush(display);
    pollfd entry{.fd = wl_display_get_fd(display), .events = POLLIN, .revents = 0};
    if (poll(&entry, 1, 0) > 0)
        wl_display_read_events(display);
    else
        wl_display_cancel_read(display);
    wl_display_dispatch_pending(display);
    return {.resized = std::exchange(parts_->isResized, false)};
}

// Shorter while the answer to a frame is expected.
double WaylandWindow::longestWait() const {
    constexpr double expected = 0.5; // seconds
    const bool isExpected =
        parts_->frame != nullptr && currentMediaTime() - parts_->framed < expected;
    return isExpected ? 0.01 : HostSurface::longestWait();
}

void WaylandWindow::willDraw() {
    static constexpr wl_callback_listener frameEvents{
        .done =
            [](void* data, wl_callback* callback, std::uint32_t) {
                wl_callback_destroy(callback);
                static_cast<Parts*>(data)->frame = nullptr;
            },
    };
    parts_->frame = wl_surface_frame(parts_->surface); // of the commit that shows the frame
    wl_callback_add_listener(parts_->frame, &frameEvents, parts_.get());
    parts_->framed = currentMediaTime();
}

void WaylandWindow::setTitle(const std::string& title) {
    if (parts_->window != nullptr)
        xdg_toplevel_set_title(parts_->window, title.c_str());
}

void WaylandWindow::show(const Picture& picture) {
    if (parts_->memory == nullptr)
        return;
    parts_->shown = WaylandPicture::make(parts_->memory, picture);
    if (!parts_->shown)
        return;
    wl_surface_attach(parts_->surface, parts_->shown->buffer(), 0, 0);
    wl_surface_damage(parts_->surface, 0, 0, INT32_MAX, INT32_MAX);
    wl_surface_commit(parts_->surface);
    wl_display_flush(parts_->display);
}

} // namespace tarnwick
