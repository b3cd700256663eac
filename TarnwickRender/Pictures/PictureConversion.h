// Converts pictures to the Y'CbCr of a movie's encoder on the GPU, so that fewer bytes are read
// back: three eighths for H.264 and HEVC. With a CPU driver convertColors is faster and gives the
// same bytes.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

class PictureConversion {
  public:
    // `format` is not bgra. Throws gpu::LibraryError, gpu::DeviceError or ShaderError.
    PictureConversion(gpu::Device& device, PixelFormat format);

    // Encodes the conversion of `picture`, of format bgra8Unorm and readable by shaders. `planes`
    // has at least pixelLayout(format, width, height).bytes and is written in that layout; bytes
    // after a row's samples are undefined. False if there is no encoder.
    bool encode(gpu::CommandBuffer& commands, const gpu::Texture& picture,
                const gpu::Buffer& planes) const;

  private:
    PixelFormat format_;
    std::unique_ptr<gpu::ComputePipelineState> kernel_;
};

} // namespace tarnwick
