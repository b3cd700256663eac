// Pipelines that draw one quad onto a frame: blending two, an overlay, the watermark.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"

#include <memory>
#include <string_view>

namespace tarnwick {

// A colour attachment on which what is drawn, with premultiplied alpha, lies over what is there.
gpu::ColorAttachmentDescriptor premultipliedOver(gpu::PixelFormat format);

// The pipeline of two functions of a program's text. Throws gpu::LibraryError, gpu::DeviceError or
// ShaderError.
std::unique_ptr<gpu::RenderPipelineState>
framePipeline(gpu::Device& device, std::string_view source, std::string_view vertexName,
              std::string_view fragmentName, const gpu::ColorAttachmentDescriptor& color);

} // namespace tarnwick
