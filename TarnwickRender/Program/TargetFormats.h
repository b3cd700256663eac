// The formats of the textures that an episode draws into.
#pragma once

#include "TarnwickGPU/Format.h"

#include <cstdint>

namespace tarnwick {

struct TargetFormats {
    static constexpr gpu::PixelFormat pixelFormat = gpu::PixelFormat::bgra8Unorm; // of pictures
    static constexpr gpu::PixelFormat trailsFormat = gpu::PixelFormat::rgba16Float;
    static constexpr gpu::PixelFormat depthFormat = gpu::PixelFormat::depth32Float; // of a grid
    static constexpr std::uint32_t meshSamples = 4; // a pixel of a grid
};

} // namespace tarnwick
