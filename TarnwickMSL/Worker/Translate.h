// Runs all steps of the compiler.
#pragma once

#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/FrontEnd.h"

namespace tarnwick::msl {

// Ignores the time limit of the options. Adds the time of each step to `times`.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const CompileOptions& options = {}, StepTimes* times = nullptr);

} // namespace tarnwick::msl
