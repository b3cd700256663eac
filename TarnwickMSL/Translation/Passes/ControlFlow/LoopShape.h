// The blocks of a structured loop.
#pragma once

#include <llvm/IR/BasicBlock.h>

namespace llvm {
class DominatorTree;
class Loop;
class LoopInfo;
} // namespace llvm

namespace tarnwick::msl {

// A loop with a separate block for each construct.
struct LoopShape {
    llvm::BasicBlock* header = nullptr; // phis and a branch
    llvm::BasicBlock* body = nullptr;   // the instructions of the header
    llvm::BasicBlock* latch = nullptr;  // branches to continue_
    llvm::BasicBlock* continue_ = nullptr;
    llvm::BasicBlock* merge = nullptr;
};

// Makes these blocks for a loop that is left only from its latch. The header keeps the instructions
// before `split`: its phis, or all except the branch.
LoopShape splitLoop(llvm::Loop& loop, llvm::BasicBlock::iterator split, llvm::DominatorTree& tree,
                    llvm::LoopInfo& loops);

} // namespace tarnwick::msl
