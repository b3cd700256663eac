// Tells the optimiser about the functions of a program.
#pragma once

#include "TarnwickMSL/Target.h"

namespace llvm {
class Module;
}

namespace tarnwick::msl {

// Sets the native integer widths of the data layout and the attributes of the built-in functions
// (BuiltInCalls.h). Removes attributes of the program's own functions and loops by which the
// optimiser would delete an endless loop, not inline a function, or assume that two arguments do
// not alias. Drops the logs of the program unless the target keeps them.
void describe(llvm::Module& program, const Target& target);

} // namespace tarnwick::msl
