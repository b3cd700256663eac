// Compares the capabilities that a SPIR-V module declares with those of a device.
#pragma once

#include "TarnwickGPU/Vulkan/FeatureChain.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarnwick::gpu {

// Extensions of a device that have no features of their own.
struct Extensions {
    bool stencilExport = false;     // VK_EXT_shader_stencil_export
    bool postDepthCoverage = false; // VK_EXT_post_depth_coverage
};

// The SPIR-V capabilities of a device opened with the features of `chain` and the extensions,
// ascending.
std::vector<std::uint32_t> capabilitiesOf(VkPhysicalDevice device, const FeatureChain& chain,
                                          Extensions extensions);

// The purpose of the first capability that the device lacks, in words ("64-bit integers"). Nothing
// if the device has all of the module's capabilities, or the table here does not list it.
std::optional<std::string> missingCapability(std::span<const std::uint32_t> module,
                                             std::span<const std::uint32_t> capabilities);

// Whether the module uses SIMD-groups.
bool usesGroups(std::span<const std::uint32_t> module);

// The stages whose functions may use SIMD-groups, kernels on every device, and the threads of one
// (Vulkan 1.3, subgroupSupportedStages and subgroupSize).
struct Groups {
    VkShaderStageFlags stages = 0;
    std::uint32_t lanes = 0;
};
Groups groupsOf(VkPhysicalDevice device);

} // namespace tarnwick::gpu
