// The packaged CPU driver counts the rounds of all loops down in one number, which each loop takes
// over from the one before and tests for. LLVM 15 then asks of each of these numbers what it knows
// of the one before: every loop in a row makes the driver two and a half times slower, twelve take
// it half a second, sixteen half a minute. What a loop with inner loops hands them is unknown to
// LLVM, which ends the row. So in a long row every few loops one goes into a loop that runs once.
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned longestRow = 6; // loops

SmallVector<BasicBlock*, 4> rowEnds(const LoopInfo& loops, function_ref<bool(const Loop&)> mayEnd) {
    SmallVector<BasicBlock*, 4> ends;
    unsigned row = 0;
    for (Loop* loop : loops.getLoopsInPreorder()) {
        row = loop->isInnermost() ? row + 1 : 0;
        if (row <= longestRow || !mayEnd(*loop))
            continue;
        ends.push_back(loop->getHeader());
        row = 1;
    }
    return ends;
}

void enclose(BasicBlock& header, Structure& structure) {
    const Merge inner = structure.lookup(&header);
    SmallVector<BasicBlock*, 2> before;
    for (BasicBlock* from : predecessors(&header))
        if (from != inner.continueTarget)
            before.push_back(from);
    BasicBlock* ahead = SplitBlockPredecessors(&header, before, ".ahead");
    BasicBlock* outer = SplitBlock(ahead, ahead->getTerminator());
    SplitBlock(outer, outer->getTerminator());
    FoldSingleEntryPHINodes(inner.merge);
    BasicBlock* again = SplitBlock(inner.merge, inner.merge->begin());
    BasicBlock* merge = SplitBlock(again, again->begin());
    SplitBlock(merge, merge->begin());
    // All lanes leave at once, so that their values need no phis of the outer header.
    Value* isDone = cast<BranchInst>(header.getTerminator())->getCondition();
    again->getTerminator()->eraseFromParent();
    BranchInst::Create(merge, outer, isDone, again);
    structure[outer] = {merge, again};
}

} // namespace tarnwick::msl
