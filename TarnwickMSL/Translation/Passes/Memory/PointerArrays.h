// Resolves local arrays of pointers with indices of run time.
#pragma once

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Turns each access of a short array of pointers by an index of run time into accesses of all its
// elements, one of which is selected, so that the array can become values. Returns whether the code
// changed.
bool splitPointerArrays(llvm::Function& main);

} // namespace tarnwick::msl
