#include "TarnwickRender/Program/ParticlePipelines.h"

#include "TarnwickCore/Findings/CodeText.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/Program/PipelineTask.h"
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

std::string recordText(const std::string& program) {
    const std::string code = codeText(program);
    const auto begin = code.find("struct Particle");
    return begin == code.npos ? std::string() : code.substr(begin, code.find("};", begin) - begin);
}

} // namespace

ParticlePipelines makeParticlePipelines(gpu::Device& device, const gpu::Library& library,
                                        const AssembledShader& shader) {
    const auto kernel = [&](std::string_view name) {
        return pipelineTask(
            [&device, &library, name] { return hostKernel(device, library, name); });
    };
    auto spawn = kernel(ShaderAssembler::spawnName);
    auto update = kernel(ShaderAssembler::updateName);
    auto fade = pipelineTask([&] {
        const HostStages stages(library, ShaderAssembler::vertexName, ShaderAssembler::fadeName,
                                TargetFormats::trailsFormat);
        return device.newRenderPipelineState(stages.descriptor);
    });
    auto dots = pipelineTask([&] {
        HostStages stages(library, ShaderAssembler::dotVertexName, ShaderAssembler::dotFragmentName,
                          TargetFormats::trailsFormat);
        stages.descriptor.topology = gpu::TopologyClass::point;
        addInto(stages.descriptor.color);
        return device.newRenderPipelineState(stages.descriptor);
    });
    const auto sizeKernel = hostKernel(device, library, ShaderAssembler::particleSizeName);
    const std::uint32_t stride = measuredSize(device, *sizeKernel);
    if (stride == 0)
        throw ShaderError("Could not measure struct Particle.");
    ParticlePipelines pipelines{
        .count = shader.particles, .stride = stride, .record = recordText(shader.source)};
    pipelines.fade = fade.get();
    pipelines.dots = dots.get();
    pipelines.spawn = spawn.get();
    pipelines.update = update.get();
    return pipelines;
}

} // namespace tarnwick
