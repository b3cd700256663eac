// The blocks that a structured loop has.
#pragma once

#include <llvm/IR/BasicBlock.h>

namespace llvm {
class DominatorTree;
class Loop;
class LoopInfo;
} // namespace llvm

namespace tarnwick::msl {

// A loop of which each construct has blocks of its own.
struct LoopShape {
    llvm::BasicBlock* header = nullptr; // phis and a branch
    llvm::BasicBlock* body = nullptr;   // what the header held
    llvm::BasicBlock* latch = nullptr;  // branches to continue_
    llvm::BasicBlock* continue_ = nullptr;
    llvm::BasicBlock* merge = nullptr;
};

// Gives a loop that only its latch leaves these blocks. The header keeps the instructions before
// `split`: its phis, or all but the branch.
LoopShape splitLoop(llvm::Loop& loop, llvm::BasicBlock::iterator split, llvm::DominatorTree& tree,
                    llvm::LoopInfo& loops);

} // namespace tarnwick::msl
