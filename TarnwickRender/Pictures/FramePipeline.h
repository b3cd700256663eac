// Pipelines that draw one quad onto a frame: crossfade, overlay, watermark.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"

#include <memory>
#include <string_view>

namespace tarnwick {

// A colour attachment that blends premultiplied colours over its content.
gpu::ColorAttachmentDescriptor premultipliedOver(gpu::PixelFormat format);

// The pipeline of two functions of `source`. Throws gpu::LibraryError, gpu::DeviceError or
// ShaderError.
std::unique_ptr<gpu::RenderPipelineState>
framePipeline(gpu::Device& device, std::string_view source, std::string_view vertexName,
              std::string_view fragmentName, const gpu::ColorAttachmentDescriptor& color);

} // namespace tarnwick
