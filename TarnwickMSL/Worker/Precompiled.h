// The standard library in precompiled form as a file beside the worker's program.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <filesystem>

namespace tarnwick::msl {

// Replaces the file; false if that fails.
bool writePrecompiled(const std::filesystem::path& path);

// Reads the file beside this program, or in ../share/tarnwick from there. If it is missing or
// another build wrote it, builds the library in memory.
StandardLibrary standardLibrary();

} // namespace tarnwick::msl
