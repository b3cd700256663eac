// The standard library in precompiled form as a file beside the worker's program.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd.h"

#include <filesystem>

namespace tarnwick::msl {

// Replaces the file; false if that fails.
bool writePrecompiled(const std::filesystem::path& path);

// Reads the installed file (InstalledFile::precompiledLibrary). If it is missing or another build
// or another Clang wrote it, builds the library in memory.
StandardLibrary standardLibrary();

} // namespace tarnwick::msl
