// Turns drawn pictures into the Y'CbCr that a movie's encoder takes, on the GPU, so that only that
// is read back: three eighths of the pixels' bytes for H.264 and HEVC. A driver that draws on the
// CPU is better off with convertColors, which gives the same bytes.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

class PictureConversion {
  public:
    // `format`: any but bgra. Throws gpu::LibraryError, gpu::DeviceError or ShaderError.
    PictureConversion(gpu::Device& device, PixelFormat format);

    // Encodes the conversion of `picture`, of format bgra8Unorm, which shaders may read. `planes`
    // has pixelLayout(format, width, height).bytes at least and gets them laid out so; what lies
    // behind a row's samples is of no meaning. False where the GPU layer has no encoder.
    bool encode(gpu::CommandBuffer& commands, const gpu::Texture& picture,
                const gpu::Buffer& planes) const;

  private:
    PixelFormat format_;
    std::unique_ptr<gpu::ComputePipelineState> kernel_;
};

} // namespace tarnwick
