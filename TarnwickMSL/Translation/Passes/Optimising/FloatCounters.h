// Loops that count in floats, `for (float i = 0; i < 4; i++)`, count in integers.
#pragma once

#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

// ScalarEvolution, and with it unrolling and the loop budget, knows the rounds of integers only.
// Handles tests in the header or the latch that compare a float of constant start and step with a
// constant. Returns whether any loop changed.
bool countInIntegers(llvm::Function& function, llvm::FunctionAnalysisManager& analyses);

} // namespace tarnwick::msl
