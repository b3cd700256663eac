// Presents frames on a window. One thread at a time may use a layer and its drawables.
#pragma once

#include "TarnwickGPU/Resources.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick::gpu {

struct LayerParts;
struct DrawableSlot;

// The texture of a window in which the next frame is drawn. Draw into texture(), then call
// CommandBuffer::present. A drawable destroyed before that is not shown. The layer must outlive its
// drawables.
class Drawable {
  public:
    explicit Drawable(DrawableSlot& slot) : slot_(&slot) {}
    ~Drawable();
    Drawable(Drawable&&) noexcept;
    Drawable& operator=(Drawable&&) noexcept;
    const Texture& texture() const; // BGRA8Unorm; the values are sRGB-encoded
    DrawableSlot& slot() const { return *slot_; }

  private:
    DrawableSlot* slot_;
};

class Layer {
  public:
    explicit Layer(std::unique_ptr<LayerParts> parts);
    // Blocks until no frame is in flight, since the window may be destroyed next.
    ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    // Sets the size of the next drawable, in pixels. Call it when the window's size changes.
    void resize(std::uint32_t width, std::uint32_t height);
    // Blocks while three frames are in flight. Absent if the window is closed, its size is 0 by 0,
    // or the device is lost. One drawable at a time.
    std::optional<Drawable> nextDrawable();

  private:
    std::unique_ptr<LayerParts> parts_;
};

} // namespace tarnwick::gpu
