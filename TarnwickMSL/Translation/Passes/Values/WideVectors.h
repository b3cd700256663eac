// Divides vectors of more than four lanes, which LLVM makes of records of bytes and of parts of
// vectors.
#pragma once

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Divides such vectors into lanes. Instructions that it does not know are unchanged.
void splitWideVectors(llvm::Function& main);

} // namespace tarnwick::msl
