// Narrows reads and writes of vectors in buffers to the used lanes.
#pragma once

#include <llvm/IR/Function.h>
#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

// On a record that is read and written as a whole, `q.colour.w = x` reads four lanes and stores
// four, three of them unchanged; this stores only one. A vector of which one lane is used is read
// as that lane. Returns whether the code changed.
bool narrowAccess(llvm::Function& main, llvm::FunctionAnalysisManager& analyses);

} // namespace tarnwick::msl
