// Reads and writes of single lanes of vectors in buffers.
#pragma once

#include <llvm/IR/Function.h>
#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

// `q.colour.w = x` on a record that is read and written back as a whole stores four lanes, three of
// them as they were, and reads them for that: this stores the one. Vectors of which one lane is
// used are read as that lane. Whether anything changed.
bool narrowAccess(llvm::Function& main, llvm::FunctionAnalysisManager& analyses);

} // namespace tarnwick::msl
