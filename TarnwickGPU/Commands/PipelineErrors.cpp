#include "TarnwickGPU/Commands/PipelineErrors.h"

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Vulkan/Capabilities.h"
#include "TarnwickGPU/Vulkan/DeviceRecord.h"

#include <array>

namespace tarnwick::gpu {

std::string refusal(const DeviceRecord& device, const std::string& subject, VkResult result) {
    const char* reason = "does not take it";
    if (result == VK_ERROR_OUT_OF_DEVICE_MEMORY || result == VK_ERROR_OUT_OF_HOST_MEMORY)
        reason = "is out of memory";
    if (result == VK_ERROR_DEVICE_LOST)
        reason = "was lost";
    return "The device could not make " + subject + ": " + device.info.name + " " + reason + ".";
}

// By the stage.
struct StageName {
    VkShaderStageFlagBits flag;
    const char* functions;
};
static constexpr std::array stages{StageName{VK_SHADER_STAGE_VERTEX_BIT, "vertex functions"},
                                   StageName{VK_SHADER_STAGE_FRAGMENT_BIT, "fragment functions"},
                                   StageName{VK_SHADER_STAGE_COMPUTE_BIT, "kernels"}};

void checkNeeds(const DeviceRecord& device, const std::string& subject,
                const msl::EntryPoint& function) {
    for (const msl::FunctionConstant& constant : function.constants)
        if (constant.isRequired)
            throw DeviceError("The device could not make " + subject + ". " +
                              missingValue(function, constant));
    const std::string start = "The device could not make " + subject + ": " + device.info.name;
    if (auto missing = missingCapability(function.words, device.features.capabilities))
        throw DeviceError(start + " has no " + *missing + ".");
    const StageName& stage = stages[static_cast<std::size_t>(function.stage)];
    if (usesGroups(function.words) && !(device.features.groups.stages & stage.flag))
        throw DeviceError(start + " has no SIMD-groups in " + stage.functions + ".");
    if (function.needsStandardSamples && !device.limits.standardSampleLocations)
        throw DeviceError(start + " has no standard sample positions.");
    if (function.needsEightLanes && device.features.groups.lanes < 8)
        throw DeviceError(start + " has SIMD-groups of " +
                          std::to_string(device.features.groups.lanes) +
                          " threads, and their matrices need 8.");
    const std::uint32_t most = device.limits.maxComputeSharedMemorySize;
    if (function.threadgroupBytes > most)
        throw DeviceError(start + " has " + std::to_string(most) +
                          " bytes of threadgroup memory, and " +
                          std::to_string(function.threadgroupBytes) + " are wanted.");
}

} // namespace tarnwick::gpu
