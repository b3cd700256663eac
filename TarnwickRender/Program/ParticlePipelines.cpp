#include "TarnwickRender/Program/ParticlePipelines.h"

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/Program/TargetFormats.h"
#include "TarnwickRender/ShaderError.h"

#include <cstring>

namespace tarnwick {
namespace {

// The size that the kernel writes; 0 if it cannot run.
std::uint32_t measuredSize(gpu::Device& device, const gpu::ComputePipelineState& kernel) {
    const auto queue = device.newCommandQueue();
    const auto buffer = device.newBuffer(sizeof(std::uint32_t));
    auto commands = queue ? queue->commandBuffer() : std::nullopt;
    if (!buffer || !commands)
        return 0;
    std::uint32_t size = 0;
    std::memcpy(buffer->contents(), &size, sizeof size);
    auto encoder = commands->computeCommandEncoder();
    if (!encoder)
        return 0;
    encoder->setComputePipelineState(kernel);
    encoder->setBuffer(*buffer, 0, 0);
    encoder->dispatchThreads({}, {});
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    std::memcpy(&size, buffer->contents(), sizeof size);
    return size;
}

// Adds colours and alpha.
void addInto(gpu::ColorAttachmentDescriptor& color) {
    color.blends = true;
    color.sourceRGB = color.destinationRGB = gpu::BlendFactor::one;
    color.sourceAlpha = color.destinationAlpha = gpu::BlendFactor::one;
}

} // namespace

ParticlePipelines makeParticlePipelines(gpu::Device& device, const gpu::Library& library,
                                        std::int64_t count) {
    const auto sizeKernel = hostKernel(device, library, ShaderAssembler::particleSizeName);
    const std::uint32_t stride = measuredSize(device, *sizeKernel);
    if (stride == 0)
        throw ShaderError("Could not measure struct Particle.");
    const HostStages fade(library, ShaderAssembler::vertexName, ShaderAssembler::fadeName,
                          TargetFormats::trailsFormat);
    HostStages dots(library, ShaderAssembler::dotVertexName, ShaderAssembler::dotFragmentName,
                    TargetFormats::trailsFormat);
    dots.descriptor.topology = gpu::TopologyClass::point;
    addInto(dots.descriptor.color);
    ParticlePipelines pipelines{.count = count, .stride = stride};
    pipelines.spawn = hostKernel(device, library, ShaderAssembler::spawnName);
    pipelines.update = hostKernel(device, library, ShaderAssembler::updateName);
    pipelines.fade = device.newRenderPipelineState(fade.descriptor);
    pipelines.dots = device.newRenderPipelineState(dots.descriptor);
    return pipelines;
}

} // namespace tarnwick
