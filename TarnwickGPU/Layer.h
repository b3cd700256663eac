// Presenting on a window: what a drawable is taken from.
#pragma once

#include "TarnwickGPU/Commands.h"

#include <cstdint>
#include <memory>

namespace tarnwick::gpu {

struct LayerParts;
struct DrawableParts;

// One frame's picture on its way to the screen. Draw into texture(), then CommandBuffer::present.
// A drawable that is dropped without being presented goes back unshown.
class Drawable {
  public:
    explicit Drawable(std::unique_ptr<DrawableParts> parts);
    ~Drawable();
    const Texture& texture() const; // BGRA8Unorm, sRGB-encoded as it stands
    DrawableParts& parts() const { return *parts_; }

  private:
    std::unique_ptr<DrawableParts> parts_;
};

class Layer {
  public:
    explicit Layer(std::unique_ptr<LayerParts> parts);
    ~Layer();

    // The window has a new size, in pixels; the next drawable has it.
    void resize(std::uint32_t width, std::uint32_t height);
    // Blocks while three frames are in flight. Null when the window or the device is gone, or its
    // size is 0 by 0.
    std::unique_ptr<Drawable> nextDrawable();

  private:
    std::unique_ptr<LayerParts> parts_;
};

} // namespace tarnwick::gpu
