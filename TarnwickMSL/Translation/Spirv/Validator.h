// What SPIRV-Tools says of a SPIR-V module. The last step of the compiler is checked with it where
// steps are checked (Passes.h).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::msl {

// What is wrong with it for Vulkan 1.3 with scalar block layout, a line each; "" where all is well.
std::string spirvFaults(const std::vector<std::uint32_t>& words);
// The module in the assembler's text.
std::string spirvText(const std::vector<std::uint32_t>& words);

} // namespace tarnwick::msl
