// What the optimiser may assume of a program's functions.
#pragma once

namespace llvm {
class Module;
}

namespace tarnwick::msl {

// Sets the data layout's native integer widths, the attributes of the built-in functions
// (BuiltInCalls.h), and removes attributes of the program's own functions and loops by which the
// optimiser would delete an endless loop, keep a function out of its callers or assume that two
// arguments do not alias.
void describe(llvm::Module& program);

} // namespace tarnwick::msl
