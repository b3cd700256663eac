// The twin's way to SPIR-V: shaderc with its optimiser.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::bench {

// shaderc rejected a twin; what() is its text.
struct TwinError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class TwinStage : std::uint8_t { vertex, fragment, compute };

// SPIR-V of GLSL 450 with `macro` defined, unless it is empty. Throws TwinError.
std::vector<std::uint32_t> compiledGLSL(const std::string& source, TwinStage stage,
                                        const std::string& macro = "");

// A fragment function "twin" that binds what an episode's tw_fragment binds. Throws TwinError.
msl::EntryPoint compiledTwin(const std::string& source, std::size_t paramCount);

} // namespace tarnwick::bench
