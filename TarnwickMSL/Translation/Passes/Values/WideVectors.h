// Vectors of more than four lanes, which LLVM makes of records of bytes and of parts of vectors.
#pragma once

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Takes such vectors apart into their lanes. What it does not know stays as it is.
void splitWideVectors(llvm::Function& main);

} // namespace tarnwick::msl
