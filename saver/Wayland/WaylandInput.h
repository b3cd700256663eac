// Whether the user of a Wayland seat is back.
#pragma once

#include <cstdint>
#include <wayland-client.h>

namespace tarnwick {

// One thread at a time; its address must not change.
class WaylandInput {
  public:
    WaylandInput() = default;
    WaylandInput(const WaylandInput&) = delete;
    WaylandInput& operator=(const WaylandInput&) = delete;

    // Listens to all devices of the seat and hides its pointer.
    void listen(wl_seat* seat);
    // A key, a button, a touch, or a pointer that moved by some points since it was seen first.
    bool isUserBack() const { return isUserBack_; }
    bool askedToClose() const { return askedToClose_; } // Escape or q

    // Of the listeners.
    void seatHas(wl_seat* seat, std::uint32_t capabilities);
    void pointerEntered(wl_pointer* pointer, std::uint32_t serial, double x, double y);
    void pointerMoved(double x, double y);
    void keyPressed(std::uint32_t key); // of linux/input-event-codes.h
    void used() { isUserBack_ = true; }

  private:
    wl_pointer* pointer_ = nullptr;
    wl_keyboard* keyboard_ = nullptr;
    wl_touch* touch_ = nullptr;
    bool hasPlace_ = false;
    double x_ = 0, y_ = 0; // points
    bool isUserBack_ = false, askedToClose_ = false;
};

} // namespace tarnwick
