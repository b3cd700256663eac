// The blocks of a structured loop.
#pragma once

#include <llvm/IR/BasicBlock.h>

namespace llvm {
class DominatorTree;
class Instruction;
class Loop;
class LoopInfo;
class Value;
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

// A comparison in the header that is true in all rounds. The driver must neither fold it nor bound
// the rounds: it removes each test for the end whose bound is above that of another test, also if
// that other one is joined to a condition by `and`. So the value that is compared is no counter. It
// is computed ahead of `end`; `last` is the block that goes back.
llvm::Value* alwaysTrue(llvm::BasicBlock& header, llvm::BasicBlock& last, llvm::Instruction& end);

} // namespace tarnwick::msl
