// Pictures that are drawn smaller than the window and enlarged, which costs less.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/OverlayQuad.h"

#include <memory>

namespace tarnwick {

// One thread at a time. `device` must outlive it.
class Enlarger {
  public:
    explicit Enlarger(gpu::Device& device) : device_(&device) {}

    // The texture of this size (bgra8Unorm) to draw the next picture in; the same as long as the
    // size is the same. Null if the device cannot make it.
    const gpu::Texture* smaller(const PixelSize& size);
    // Encodes the copy of smaller() that fills `whole`. Returns whether it could.
    bool enlarge(gpu::CommandBuffer& commands, const gpu::Texture& whole);

  private:
    gpu::Device* device_;
    std::unique_ptr<OverlayQuad> quad_;
    std::unique_ptr<gpu::Texture> smaller_;
};

} // namespace tarnwick
