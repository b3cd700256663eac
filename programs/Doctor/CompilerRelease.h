// The release of the compiler's libraries.
#pragma once

#include <optional>
#include <string>

namespace tarnwick {

// As the worker prints it: "Debian clang version 19.1.7". Absent if the worker cannot be run.
// Blocks.
std::optional<std::string> compilerRelease();

} // namespace tarnwick
