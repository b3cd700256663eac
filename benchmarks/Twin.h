// Compiles the twin to SPIR-V: shaderc with its optimiser.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::bench {

// shaderc rejects a twin. what() is its text.
struct TwinError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class TwinStage : std::uint8_t { vertex, fragment, compute };

// The SPIR-V of GLSL 450 with `macro` defined; empty: none. Throws TwinError.
std::vector<std::uint32_t> compiledGLSL(const std::string& source, TwinStage stage,
                                        const std::string& macro = "");

// A fragment function "twin" with the bindings of tw_fragment of an episode. Throws TwinError.
msl::EntryPoint compiledTwin(const std::string& source, std::size_t paramCount);

} // namespace tarnwick::bench
