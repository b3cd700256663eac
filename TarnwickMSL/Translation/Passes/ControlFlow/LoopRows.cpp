// The packaged CPU driver counts the rounds of all loops down in one number, which each loop takes
// from the loop before and tests. Its LLVM 15 analyses each of these numbers by the one before:
// every loop in a row makes the driver two and a half times slower; 12 loops take half a second, 16
// half a minute. LLVM knows nothing of the number that a loop passes to its inner loops, and the
// row ends there. So in a long row one loop in every few is put into a loop that runs once.
//
// The driver unrolls most loops with a constant number of rounds before LLVM sees them, together
// with a loop that runs once around one. So a row ends after as many loops of any kind, and after
// as many loops without a constant number, at one of those.
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned longestRow = 6; // loops

// Whether the header tests `i < N`, with which the driver counts the rounds.
static bool isCounted(const Loop& loop) {
    const BasicBlock* header = loop.getHeader();
    auto* branch = dyn_cast<BranchInst>(header->getTerminator());
    auto* test =
        branch && branch->isConditional() ? dyn_cast<ICmpInst>(branch->getCondition()) : nullptr;
    auto* counter = test ? dyn_cast<PHINode>(test->getOperand(0)) : nullptr;
    return counter && counter->getParent() == header && isa<ConstantInt>(test->getOperand(1)) &&
           any_of(counter->incoming_values(), [](const Use& use) { return isa<ConstantInt>(use); });
}

SmallVector<BasicBlock*, 4> rowEnds(const LoopInfo& loops) {
    SmallVector<BasicBlock*, 4> ends;
    unsigned all = 0, uncounted = 0; // since the last end
    for (Loop* loop : loops.getLoopsInPreorder()) {
        if (!loop->isInnermost()) {
            all = uncounted = 0;
            continue;
        }
        all++;
        const bool isUncounted = !isCounted(*loop);
        uncounted += isUncounted ? 1 : 0;
        if (all <= longestRow && (!isUncounted || uncounted <= longestRow))
            continue;
        ends.push_back(loop->getHeader());
        all = 1;
        uncounted = isUncounted ? 1 : uncounted;
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
    // All lanes leave in the same round, so their values need no phis of the outer header.
    auto* test = cast<BranchInst>(header.getTerminator());
    Value* isDone = test->getCondition();
    if (test->getSuccessor(0) != inner.merge)
        isDone = IRBuilder<>(inner.merge->getTerminator()).CreateNot(isDone);
    again->getTerminator()->eraseFromParent();
    BranchInst::Create(merge, outer, isDone, again);
    structure[outer] = {merge, again};
}

} // namespace tarnwick::msl
