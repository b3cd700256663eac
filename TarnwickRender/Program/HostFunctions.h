// The functions that the assembler writes around an episode, found in the compiled library.
//
// An episode can hide such a name by a macro and define a function of that name itself. A function
// is accepted only if it has the host's stage and takes the resources that the host binds.
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

// Null if the library has no such function. The resources are checked only for names of the host.
std::unique_ptr<gpu::Function> findHostFunction(const gpu::Library& library, std::string_view name,
                                                msl::Stage stage);

// Throws ShaderError, which names the function, if the program lacks it.
std::unique_ptr<gpu::Function> hostFunction(const gpu::Library& library, std::string_view name,
                                            msl::Stage stage);

// Looks for all functions of the kind of episode. Throws ShaderError for the first missing one.
void checkHostFunctions(const gpu::Library& library, const AssembledShader& shader);

// The pipeline of one kernel. Throws ShaderError or gpu::DeviceError.
std::unique_ptr<gpu::ComputePipelineState>
hostKernel(gpu::Device& device, const gpu::Library& library, std::string_view name);

// The size of a host kernel's threadgroups: 256 threads, or the pipeline's maximum if that is less.
gpu::Size hostThreadgroup(const gpu::ComputePipelineState& kernel);

// A descriptor of a pipeline and the two functions that it borrows.
struct HostStages {
    std::unique_ptr<gpu::Function> vertex, fragment;
    gpu::RenderPipelineDescriptor descriptor;

    // Throws ShaderError if the library lacks one of the two.
    HostStages(const gpu::Library& library, std::string_view vertexName,
               std::string_view fragmentName, gpu::PixelFormat colorFormat);
};

} // namespace tarnwick
