// How often a loop runs at most.
#pragma once

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ScalarEvolution.h>
#include <llvm/IR/Dominators.h>

#include <cstdint>

namespace tarnwick::msl {

// The most rounds of one execution of the loop; 0 if there is no known maximum.
std::uint64_t mostRounds(const llvm::Loop& loop, llvm::ScalarEvolution& evolution,
                         const llvm::DominatorTree& tree);

} // namespace tarnwick::msl
