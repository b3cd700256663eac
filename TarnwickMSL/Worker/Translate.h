// Runs all steps of the compiler.
#pragma once

#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/FrontEnd.h"

namespace tarnwick::msl {

// Ignores the time limit of the options.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const CompileOptions& options = {});

} // namespace tarnwick::msl
