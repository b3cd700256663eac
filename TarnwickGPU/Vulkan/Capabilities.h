// What a module asks of a device, against what the device has.
#pragma once

#include "TarnwickGPU/Vulkan/FeatureChain.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarnwick::gpu {

// The capabilities that modules may declare on a device opened with `chain`, ascending.
std::vector<std::uint32_t> capabilitiesOf(VkPhysicalDevice device, const FeatureChain& chain);

// What the first capability that the device lacks is for, in words ("64-bit integers"); nothing
// where it has all that the module declares, or where this layer does not know the capability.
std::optional<std::string> missingCapability(std::span<const std::uint32_t> module,
                                             std::span<const std::uint32_t> capabilities);

} // namespace tarnwick::gpu
