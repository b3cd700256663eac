// Laying a picture with premultiplied alpha over another.
#pragma once

#include "TarnwickGPU/Pipeline.h"

namespace tarnwick {

// A colour attachment on which what is drawn lies over what is there.
inline gpu::ColorAttachmentDescriptor premultipliedOver(gpu::PixelFormat format) {
    return {.format = format,
            .blends = true,
            .sourceRGB = gpu::BlendFactor::one,
            .destinationRGB = gpu::BlendFactor::oneMinusSourceAlpha,
            .sourceAlpha = gpu::BlendFactor::one,
            .destinationAlpha = gpu::BlendFactor::oneMinusSourceAlpha};
}

} // namespace tarnwick
