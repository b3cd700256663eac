// Loops that walk over a short array end with it.
#pragma once

#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

// Where every round of a loop reads or writes the next element of a local array or a table, the
// round past the array's end is undefined: the loop's test becomes false before it, which tells the
// most rounds that the loop runs. Gives whether any loop changed.
bool boundArrayLoops(llvm::Function& function, llvm::FunctionAnalysisManager& analyses);

} // namespace tarnwick::msl
