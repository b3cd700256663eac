// The pipelines of a grid episode before its final pass.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"

#include <cstdint>
#include <memory>

namespace tarnwick {

struct MeshPipelines {
    std::int64_t cells = 0; // per side
    std::unique_ptr<gpu::RenderPipelineState> grid;
    std::unique_ptr<gpu::RenderPipelineState> background; // null without `background`
    std::unique_ptr<gpu::DepthStencilState> depth;        // the grid's own test
    std::unique_ptr<gpu::DepthStencilState> behind;       // for the background: no test, no write
};

enum class MeshBackground : std::uint8_t { none, byEpisode };

// Throws ShaderError or gpu::DeviceError.
MeshPipelines makeMeshPipelines(gpu::Device& device, const gpu::Library& library,
                                std::int64_t cells, MeshBackground background);

} // namespace tarnwick
