// Vectors of more than four lanes, which LLVM makes of narrower parts of vectors' lanes.
#pragma once

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Replaces reads of single lanes of such vectors by reads of what they are parts of.
void splitWideVectors(llvm::Function& main);

} // namespace tarnwick::msl
