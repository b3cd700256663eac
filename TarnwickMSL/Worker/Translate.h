// All steps of the compiler in a row.
#pragma once

#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/FrontEnd.h"

namespace tarnwick::msl {

Compilation translate(std::string_view source, const StandardLibrary& library,
                      const Target& target = {});

} // namespace tarnwick::msl
