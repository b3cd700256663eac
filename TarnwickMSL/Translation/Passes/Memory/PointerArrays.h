// Local arrays of pointers that are indexed at run time.
#pragma once

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Turns each access of a short array that holds pointers, by an index of run time, into accesses of
// all its elements of which one is chosen, so that the array can become values. Gives whether it
// changed anything.
bool splitPointerArrays(llvm::Function& main);

} // namespace tarnwick::msl
