// All steps of the compiler in a row.
#pragma once

#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/FrontEnd.h"

namespace tarnwick::msl {

// The options' time limit is not kept here.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const CompileOptions& options = {});

} // namespace tarnwick::msl
