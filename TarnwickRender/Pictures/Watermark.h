// The watermark: a glowing arch in the corner of a frame.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <array>
#include <cstdint>
#include <memory>

namespace tarnwick {

// Buffer 0 of the watermark's shader.
struct WMUniforms {
    std::array<float, 4> rect{};   // pixels from the lower left: x, y, side; the last is not read
    std::array<float, 2> target{}; // the frame's width and height in pixels
    float opacity = 1;             // [0, 1]
    float pad = 0;
};
static_assert(sizeof(WMUniforms) == 32);

class Watermark {
  public:
    static constexpr float opacity = 0.9f;

    // `format` is that of the target. Throws gpu::LibraryError, gpu::DeviceError or ShaderError.
    Watermark(gpu::Device& device, gpu::PixelFormat format);

    // Encodes the watermark over a frame of that size, which fills the viewport.
    void draw(gpu::RenderCommandEncoder& encoder, std::int64_t width, std::int64_t height) const;

  private:
    std::unique_ptr<gpu::RenderPipelineState> pipeline_;
};

} // namespace tarnwick
