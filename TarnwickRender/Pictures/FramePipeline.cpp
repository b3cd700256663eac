#include "TarnwickRender/Pictures/FramePipeline.h"

#include "TarnwickRender/Program/HostFunctions.h"

namespace tarnwick {

gpu::ColorAttachmentDescriptor premultipliedOver(gpu::PixelFormat format) {
    return {.format = format,
            .blends = true,
            .sourceRGB = gpu::BlendFactor::one,
            .destinationRGB = gpu::BlendFactor::oneMinusSourceAlpha,
            .sourceAlpha = gpu::BlendFactor::one,
            .destinationAlpha = gpu::BlendFactor::oneMinusSourceAlpha};
}

std::unique_ptr<gpu::RenderPipelineState>
framePipeline(gpu::Device& device, std::string_view source, std::string_view vertexName,
              std::string_view fragmentName, const gpu::ColorAttachmentDescriptor& color) {
    const auto library = device.newLibrary(source);
    HostStages stages(*library, vertexName, fragmentName, color.format);
    stages.descriptor.color = color;
    return device.newRenderPipelineState(stages.descriptor);
}

} // namespace tarnwick
