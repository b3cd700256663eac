// The functions that the assembler writes around an episode, found in the compiled library.
//
// An episode can hide one of their names by a macro and define a function of that name itself. So a
// function counts as the host's only if it is of the host's stage and takes what the host binds.
#pragma once

#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"

#include <memory>
#include <string_view>

namespace tarnwick {

// The kernel that SoundCheck adds behind the program.
inline constexpr std::string_view soundCheckName = "tw_sound_check";

// Null when the library has no such function of the host's, or of a program of our own.
std::unique_ptr<gpu::Function> findHostFunction(const gpu::Library& library, std::string_view name,
                                                msl::Stage stage);

// Throws ShaderError, which names the function, when it is not found.
std::unique_ptr<gpu::Function> hostFunction(const gpu::Library& library, std::string_view name,
                                            msl::Stage stage);

// Looks for all that the kind of episode has. Throws ShaderError for the first that is not found.
void checkHostFunctions(const gpu::Library& library, const AssembledShader& shader);

// The pipeline of one kernel. Throws ShaderError or gpu::DeviceError.
std::unique_ptr<gpu::ComputePipelineState>
hostKernel(gpu::Device& device, const gpu::Library& library, std::string_view name);

// The size of a host kernel's threadgroups: 256 threads, or the pipeline's maximum if that is less.
gpu::Size hostThreadgroup(const gpu::ComputePipelineState& kernel);

// Two stages and what is drawn into: the functions that a descriptor borrows, kept beside it.
struct HostStages {
    std::unique_ptr<gpu::Function> vertex, fragment;
    gpu::RenderPipelineDescriptor descriptor;

    // Throws ShaderError when the library lacks one of the two.
    HostStages(const gpu::Library& library, std::string_view vertexName,
               std::string_view fragmentName, gpu::PixelFormat colorFormat);
};

} // namespace tarnwick
