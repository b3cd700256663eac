// The standard library in precompiled form as a file beside the worker's program.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <filesystem>

namespace tarnwick::msl {

// Writes the file anew; false where that fails.
bool writePrecompiled(const std::filesystem::path& path);

// The file beside this program (or in ../share/tarnwick of there); where it is missing or not of
// this very library and compiler, the library is built in memory.
StandardLibrary standardLibrary();

} // namespace tarnwick::msl
