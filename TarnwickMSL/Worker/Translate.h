// Runs all steps of the compiler.
#pragma once

#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/FrontEnd.h"

#include <memory>

namespace tarnwick::msl {

// The memory of a translation, which takes time to free.
using Remains = std::shared_ptr<void>;

// Ignores the time limit of the options. Adds the time of each step to `times`. The caller frees
// `remains` when nobody waits.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const CompileOptions& options = {}, StepTimes* times = nullptr,
                      Remains* remains = nullptr);

} // namespace tarnwick::msl
