// The functions that the assembler writes around an episode, found in the compiled library.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"

#include <memory>
#include <string_view>

namespace tarnwick {

// Throws ShaderError, which names the function, when the library lacks it.
std::unique_ptr<gpu::Function> hostFunction(const gpu::Library& library, std::string_view name);

// The pipeline of one kernel. Throws ShaderError or gpu::DeviceError.
std::unique_ptr<gpu::ComputePipelineState>
hostKernel(gpu::Device& device, const gpu::Library& library, std::string_view name);

// Two stages and what is drawn into: the functions that a descriptor borrows, kept beside it.
struct HostStages {
    std::unique_ptr<gpu::Function> vertex, fragment;
    gpu::RenderPipelineDescriptor descriptor;

    // Throws ShaderError when the library lacks one of the two.
    HostStages(const gpu::Library& library, std::string_view vertexName,
               std::string_view fragmentName, gpu::PixelFormat colorFormat);
};

} // namespace tarnwick
