// The pipelines of a particle episode before its final pass.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tarnwick {

struct AssembledShader;

struct ParticlePipelines {
    std::int64_t count = 0;  // particles
    std::int64_t stride = 0; // bytes of one `struct Particle` as the GPU lays it out
    std::string record;      // the text of `struct Particle`, without comments
    std::unique_ptr<gpu::ComputePipelineState> spawn, update;
    std::unique_ptr<gpu::RenderPipelineState> fade; // draws into the trails without blending
    std::unique_ptr<gpu::RenderPipelineState> dots; // adds points to the trails
};

// Blocks while the GPU measures `struct Particle`. Throws ShaderError or gpu::DeviceError.
ParticlePipelines makeParticlePipelines(gpu::Device& device, const gpu::Library& library,
                                        const AssembledShader& shader);

} // namespace tarnwick
