// The stage of a function, as Vulkan and SPIR-V name it.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <spirv/unified1/spirv.hpp11>
#include <vulkan/vulkan.h>

namespace tarnwick::gpu {

// The stages that see the function's resources: of a patch function also the generated control
// stage, which reads the factors.
VkShaderStageFlags stageFlags(const msl::EntryPoint& function);
spv::ExecutionModel executionModel(const msl::EntryPoint& function);

} // namespace tarnwick::gpu
