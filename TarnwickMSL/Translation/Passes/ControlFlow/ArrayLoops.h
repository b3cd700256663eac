// Ends loops over a short array at the end of the array.
#pragma once

#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

// If every round of a loop accesses the next element of a local array or a table, a round after the
// end of the array is undefined. This makes the test of the loop false there, which shows the
// maximum number of rounds. Returns whether any loop changed.
bool boundArrayLoops(llvm::Function& function, llvm::FunctionAnalysisManager& analyses);

} // namespace tarnwick::msl
