// The parts of a compiled episode: its parameters and pipelines.
#pragma once

#include "TarnwickCore/Params.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickRender/Program/MeshPipelines.h"
#include "TarnwickRender/Program/ParticlePipelines.h"

#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// Made by ShaderProgram and constant afterwards. Runs and sounds read it and may share it.
struct ProgramParts {
    std::vector<ParamDecl> params;
    std::unique_ptr<gpu::RenderPipelineState> pipeline;       // of the final pass
    std::unique_ptr<gpu::ComputePipelineState> soundPipeline; // null without `sound`
    std::shared_ptr<const msl::EntryPoint> soundFunction;     // of soundPipeline, or null
    std::optional<ParticlePipelines> particles;               // of a particle episode
    std::optional<MeshPipelines> mesh;                        // of a grid episode
    std::unique_ptr<gpu::Texture> blank; // 1 by 1, transparent black; null without Inputs
    bool readsPrevious = false;          // the final pass reads the last finished frame

    // Whether drawing needs a ShaderRun of the target's size.
    bool needsRun() const { return particles || mesh; }
};

} // namespace tarnwick
