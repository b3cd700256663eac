// How much code is for the packaged CPU driver, relative to scalar additions.
#pragma once

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ScalarEvolution.h>
#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Whether the callee is an intrinsic that devices compute by an instruction of their own or, like
// the packaged CPU driver, by a polynomial.
bool isTranscendental(const llvm::Function& callee);

double weightOf(const llvm::Function& function);
double weightOf(const llvm::Loop& loop); // of one round, with one round of its inner loops

// An upper bound of the weight that is left of one round if all rounds become straight code:
// without what is computed from the counters of the loop and its inner loops alone, with half of
// each side of a branch on such a value, and without accesses of local arrays at such indices.
// Infinite if an inner loop has no constant number of rounds.
double weightLeft(const llvm::Loop& loop, llvm::ScalarEvolution& evolution);

} // namespace tarnwick::msl
