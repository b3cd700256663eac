// Presenting on a window: what a drawable is taken from.
#pragma once

#include "TarnwickGPU/Resources.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick::gpu {

struct LayerParts;
struct DrawableSlot;

// One frame's picture on its way to the screen. Draw into texture(), then CommandBuffer::present.
// A drawable that is dropped without being presented goes back unshown. It must go before its
// layer does.
class Drawable {
  public:
    explicit Drawable(DrawableSlot& slot) : slot_(&slot) {}
    ~Drawable();
    Drawable(Drawable&&) noexcept;
    Drawable& operator=(Drawable&&) noexcept;
    const Texture& texture() const; // BGRA8Unorm, sRGB-encoded as it stands
    DrawableSlot& slot() const { return *slot_; }

  private:
    DrawableSlot* slot_;
};

class Layer {
  public:
    explicit Layer(std::unique_ptr<LayerParts> parts);
    // Waits for the frames in flight, since the window may go right after it.
    ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    // The window has a new size, in pixels; the next drawable has it.
    void resize(std::uint32_t width, std::uint32_t height);
    // Blocks while three frames are in flight. Nothing when the window or the device is gone, or
    // its size is 0 by 0. One drawable at a time.
    std::optional<Drawable> nextDrawable();

  private:
    std::unique_ptr<LayerParts> parts_;
};

} // namespace tarnwick::gpu
