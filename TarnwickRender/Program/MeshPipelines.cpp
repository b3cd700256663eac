#include "TarnwickRender/Program/MeshPipelines.h"

#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/Program/PipelineTask.h"
#include "TarnwickRender/Program/TargetFormats.h"
#include "TarnwickRender/ShaderError.h"

namespace tarnwick {
namespace {

std::unique_ptr<gpu::RenderPipelineState> meshPipeline(gpu::Device& device,
                                                       const gpu::Library& library,
                                                       std::string_view vertexName,
                                                       std::string_view fragmentName) {
    HostStages stages(library, vertexName, fragmentName, TargetFormats::pixelFormat);
    stages.descriptor.depthFormat = TargetFormats::depthFormat;
    stages.descriptor.sampleCount = TargetFormats::meshSamples;
    return device.newRenderPipelineState(stages.descriptor);
}

} // namespace

MeshPipelines makeMeshPipelines(gpu::Device& device, const gpu::Library& library,
                                std::int64_t cells, MeshBackground background) {
    MeshPipelines pipelines{.cells = cells};
    pipelines.depth = device.newDepthStencilState(
        {.depthCompare = gpu::CompareFunction::less, .depthWrites = true});
    pipelines.behind = device.newDepthStencilState(
        {.depthCompare = gpu::CompareFunction::always, .depthWrites = false});
    if (!pipelines.depth || !pipelines.behind)
        throw ShaderError("Could not make the depth test.");
    auto behindGrid = pipelineTask([&] {
        return background == MeshBackground::byEpisode
                   ? meshPipeline(device, library, ShaderAssembler::vertexName,
                                  ShaderAssembler::backgroundName)
                   : nullptr;
    });
    pipelines.grid = meshPipeline(device, library, ShaderAssembler::meshVertexName,
                                  ShaderAssembler::meshFragmentName);
    pipelines.background = behindGrid.get();
    return pipelines;
}

} // namespace tarnwick
