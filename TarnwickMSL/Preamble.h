// The lines that are put before a program: its macros, its version and its name.
#pragma once

#include "TarnwickMSL/Compile.h"

#include <string>

namespace tarnwick::msl {

// Ends with a #line, so that messages about the program have its name and its lines. Empty for
// options that ask for nothing of the kind.
std::string preamble(const CompileOptions& options);

} // namespace tarnwick::msl
