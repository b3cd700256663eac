// What the compiler's program says of itself.
#pragma once

#include <optional>
#include <string>

namespace tarnwick {

// As the worker prints it: "Debian clang version 19.1.7". Absent if the worker cannot be run.
// Blocks.
std::optional<std::string> compilerRelease();

// Whether the kernel takes files, the network and other processes away from it. Blocks.
bool isCompilerConfined();

} // namespace tarnwick
