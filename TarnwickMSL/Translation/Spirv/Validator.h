// Validates a SPIR-V module with SPIRV-Tools. The checks of the last step of the compiler use it
// (Passes.h).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::msl {

// The errors of the module for Vulkan 1.3 with scalar block layout, one per line; "" without
// errors.
std::string spirvFaults(const std::vector<std::uint32_t>& words);
// The module as text of the SPIR-V assembler.
std::string spirvText(const std::vector<std::uint32_t>& words);

} // namespace tarnwick::msl
