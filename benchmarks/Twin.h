// The twin's way to SPIR-V: shaderc with its optimiser.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <stdexcept>
#include <string>

namespace tarnwick::bench {

// shaderc rejected a twin; what() is its text.
struct TwinError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A fragment function "twin" that binds what an episode's tw_fragment binds. Throws TwinError.
msl::EntryPoint compiledTwin(const std::string& source, std::size_t paramCount);

} // namespace tarnwick::bench
