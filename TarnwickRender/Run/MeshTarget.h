// The target of a grid, which the final pass reads.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

// Three textures of one size that live on the GPU alone: TargetFormats::meshSamples a pixel in
// `color` and `depth`, their mean in `resolved`.
struct MeshTarget {
    std::unique_ptr<gpu::Texture> color, depth, resolved;

    // Null for a size below 1 by 1 and if the device has no room.
    static std::unique_ptr<MeshTarget> make(gpu::Device& device, std::int64_t width,
                                            std::int64_t height);
};

} // namespace tarnwick
