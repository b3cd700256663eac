#include "player/Window/WindowGround.h"

#include <xcb/composite.h>
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <array>

namespace tarnwick::player {
namespace {

// Qt makes windows without a background: the server leaves there whatever was on the screen.
void setBlack(xcb_connection_t* connection, xcb_window_t window) {
    constexpr std::uint32_t black = 0xff000000;
    const std::array<std::uint32_t, 2> values{black, XCB_GRAVITY_NORTH_WEST};
    xcb_change_window_attributes(connection, window, XCB_CW_BACK_PIXEL | XCB_CW_BIT_GRAVITY,
                                 values.data());
}

// The server draws the window into memory of its own and copies that to the screen (Composite
// extension 0.4, automatic redirection).
void keepCovered(xcb_connection_t* connection, xcb_window_t window) {
    const xcb_query_extension_reply_t* composite =
        xcb_get_extension_data(connection, &xcb_composite_id);
    if (composite != nullptr && composite->present != 0)
        xcb_composite_redirect_window(connection, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

} // namespace

void prepareGround(const QWindow& window, CoveredContent covered) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr)
        return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    setBlack(x11->connection(), id);
    if (covered == CoveredContent::isKept)
        keepCovered(x11->connection(), id);
    xcb_flush(x11->connection());
}

} // namespace tarnwick::player
