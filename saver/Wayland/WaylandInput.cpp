#include "saver/Wayland/WaylandInput.h"

#include <linux/input-event-codes.h>

#include <cmath>
#include <unistd.h>

namespace tarnwick {
namespace {

constexpr double smallestMove = 8; // points; a shaken desk is no user

WaylandInput& input(void* data) {
    return *static_cast<WaylandInput*>(data);
}

// The events of the first versions of the devices, which are those that are bound.
constexpr wl_pointer_listener pointerEvents{
    .enter =
        [](void* data, wl_pointer* pointer, std::uint32_t serial, wl_surface*, wl_fixed_t x,
           wl_fixed_t y) {
            input(data).pointerEntered(pointer, serial, wl_fixed_to_double(x),
                                       wl_fixed_to_double(y));
        },
    .leave = [](void*, wl_pointer*, std::uint32_t, wl_surface*) {},
    .motion =
        [](void* data, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
            input(data).pointerMoved(wl_fixed_to_double(x), wl_fixed_to_double(y));
        },
    .button = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
                 std::uint32_t) { input(data).used(); },
    .axis = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t,
               wl_fixed_t) { input(data).used(); },
};

constexpr wl_keyboard_listener keyboardEvents{
    .keymap = [](void*, wl_keyboard*, std::uint32_t, std::int32_t file,
                 std::uint32_t) { close(file); },
    .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
    .leave = [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
    .key =
        [](void* data, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t key,
           std::uint32_t state) {
            if (state == WL_KEYBOARD_KEY_STATE_PRESSED)
                input(data).keyPressed(key);
        },
    .modifiers = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
                    std::uint32_t) {},
};

constexpr wl_touch_listener touchEvents{
    .down = [](void* data, wl_touch*, std::uint32_t, std::uint32_t, wl_surface*, std::int32_t,
               wl_fixed_t, wl_fixed_t) { input(data).used(); },
    .up = [](void*, wl_touch*, std::uint32_t, std::uint32_t, std::int32_t) {},
    .motion = [](void*, wl_touch*, std::uint32_t, std::int32_t, wl_fixed_t, wl_fixed_t) {},
    .frame = [](void*, wl_touch*) {},
    .cancel = [](void*, wl_touch*) {},
};

constexpr wl_seat_listener seatEvents{
    .capabilities = [](void* data, wl_seat* seat,
                       std::uint32_t capabilities) { input(data).seatHas(seat, capabilities); },
};

} // namespace

void WaylandInput::listen(wl_seat* seat) {
    wl_seat_add_listener(seat, &seatEvents, this);
}

void WaylandInput::seatHas(wl_seat* seat, std::uint32_t capabilities) {
    if ((capabilities & WL_SEAT_CAPABILITY_POINTER) != 0 && pointer_ == nullptr) {
        pointer_ = wl_seat_get_pointer(seat);
        wl_pointer_add_listener(pointer_, &pointerEvents, this);
    }
    if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0 && keyboard_ == nullptr) {
        keyboard_ = wl_seat_get_keyboard(seat);
        wl_keyboard_add_listener(keyboard_, &keyboardEvents, this);
    }
    if ((capabilities & WL_SEAT_CAPABILITY_TOUCH) != 0 && touch_ == nullptr) {
        touch_ = wl_seat_get_touch(seat);
        wl_touch_add_listener(touch_, &touchEvents, this);
    }
}

// A pointer enters also without a move, when the surface appears below it.
void WaylandInput::pointerEntered(wl_pointer* pointer, std::uint32_t serial, double x, double y) {
    wl_pointer_set_cursor(pointer, serial, nullptr, 0, 0);
    hasPlace_ = true;
    x_ = x;
    y_ = y;
}

void WaylandInput::pointerMoved(double x, double y) {
    isUserBack_ |= hasPlace_ && std::hypot(x - x_, y - y_) > smallestMove;
}

void WaylandInput::keyPressed(std::uint32_t key) {
    isUserBack_ = true;
    askedToClose_ |= key == KEY_ESC || key == KEY_Q;
}

} // namespace tarnwick
