// A picture in memory that a Wayland compositor can show.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <memory>
#include <wayland-client.h>

namespace tarnwick {

class WaylandPicture {
  public:
    // Copies the pixels. Null without memory. The picture must be shown before it is destroyed.
    static std::unique_ptr<WaylandPicture> make(wl_shm* memory, const Picture& picture);
    ~WaylandPicture();
    WaylandPicture(const WaylandPicture&) = delete;
    WaylandPicture& operator=(const WaylandPicture&) = delete;

    wl_buffer* buffer() const { return buffer_; }

  private:
    explicit WaylandPicture(wl_buffer* buffer) : buffer_(buffer) {}
    wl_buffer* buffer_;
};

} // namespace tarnwick
