#include "TarnwickGPU/Vulkan/Stages.h"

namespace tarnwick::gpu {

VkShaderStageFlags stageFlags(const msl::EntryPoint& function) {
    if (function.patch != msl::PatchKind::none)
        return VK_SHADER_STAGE_TESSELLATION_CONTROL_BIT |
               VK_SHADER_STAGE_TESSELLATION_EVALUATION_BIT;
    switch (function.stage) {
    case msl::Stage::vertex:
        return VK_SHADER_STAGE_VERTEX_BIT;
    case msl::Stage::fragment:
        return VK_SHADER_STAGE_FRAGMENT_BIT;
    case msl::Stage::object:
        return VK_SHADER_STAGE_TASK_BIT_EXT;
    case msl::Stage::mesh:
        return VK_SHADER_STAGE_MESH_BIT_EXT;
    case msl::Stage::kernel:
        break;
    }
    return VK_SHADER_STAGE_COMPUTE_BIT;
}

spv::ExecutionModel executionModel(const msl::EntryPoint& function) {
    if (function.patch != msl::PatchKind::none)
        return spv::ExecutionModel::TessellationEvaluation;
    switch (function.stage) {
    case msl::Stage::vertex:
        return spv::ExecutionModel::Vertex;
    case msl::Stage::fragment:
        return spv::ExecutionModel::Fragment;
    case msl::Stage::object:
        return spv::ExecutionModel::TaskEXT;
    case msl::Stage::mesh:
        return spv::ExecutionModel::MeshEXT;
    case msl::Stage::kernel:
        break;
    }
    return spv::ExecutionModel::GLCompute;
}

} // namespace tarnwick::gpu
