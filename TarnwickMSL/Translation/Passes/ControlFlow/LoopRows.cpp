// The packaged CPU driver counts the rounds of all loops down in one number, which each loop takes
// from the loop before and tests. Its LLVM 15 analyses each of these numbers by the one before:
// every loop in a row makes the driver two and a half times slower; 12 loops take half a second, 16
// half a minute. LLVM knows nothing of the number that a loop passes to its inner loops, and the
// row ends there. So in a long row one loop in every few is put into a loop that runs once.
//
// The driver unrolls most loops with a constant number of rounds before LLVM sees them, together
// with a loop that runs once around one. So a row ends after as many loops of any kind, and after
// as many loops without a constant number, at one of those.
//
// Loops around others do not end a row: the driver knows more constants than we do, and removes a
// loop that it finds to leave in its first round. What was a list of nests is then a row. So a loop
// that runs once goes around the outermost loop that begins with the next loop of the row, where it
// is entered least often. Its test must be unknown to the driver, also without the outer loops.
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopShape.h"

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

// The outermost loop whose first loop without inner ones is this one.
static const Loop& outermostFrom(const Loop& first) {
    const Loop* loop = &first;
    while (loop->getParentLoop() && loop->getParentLoop()->getSubLoops().front() == loop)
        loop = loop->getParentLoop();
    return *loop;
}

SmallVector<RowEnd, 4> rowEnds(const LoopInfo& loops) {
    SmallVector<RowEnd, 4> ends;
    unsigned all = 0, uncounted = 0; // since the last end
    for (Loop* loop : loops.getLoopsInPreorder()) {
        if (!loop->isInnermost())
            continue;
        all++;
        const bool isUncounted = !isCounted(*loop);
        uncounted += isUncounted ? 1 : 0;
        if (all <= longestRow && (!isUncounted || uncounted <= longestRow))
            continue;
        const Loop& end = outermostFrom(*loop);
        ends.push_back(
            {end.getHeader(), end.isInnermost() ? Enclosure::vanishes : Enclosure::stays});
        all = 1;
        if (isUncounted || !end.isInnermost())
            uncounted = isUncounted ? 1 : 0;
    }
    return ends;
}

// Whether the invocation has left the loop by the test of its header, on its way to the merge.
static Value* hasLeft(BasicBlock& header, const Merge& loop) {
    auto* test = cast<BranchInst>(header.getTerminator());
    return test->getSuccessor(0) == loop.merge
               ? test->getCondition()
               : IRBuilder<>(loop.merge->getTerminator()).CreateNot(test->getCondition());
}

void enclose(BasicBlock& header, Enclosure enclosure, Structure& structure) {
    const Merge inner = structure.lookup(&header);
    SmallVector<BasicBlock*, 2> before;
    for (BasicBlock* from : predecessors(&header))
        if (from != inner.continueTarget)
            before.push_back(from);
    BasicBlock* ahead = SplitBlockPredecessors(&header, before, ".ahead");
    BasicBlock* outer = SplitBlock(ahead, ahead->getTerminator());
    SplitBlock(outer, outer->getTerminator());
    if (inner.merge->getSinglePredecessor())
        FoldSingleEntryPHINodes(inner.merge);
    BasicBlock* again = SplitBlock(inner.merge, inner.merge->begin());
    BasicBlock* merge = SplitBlock(again, again->begin());
    SplitBlock(merge, merge->begin());
    again->getTerminator()->eraseFromParent();
    // All lanes leave in the same round, so their values need no phis of the outer header.
    auto* test = BranchInst::Create(merge, outer, ConstantInt::getTrue(header.getContext()), again);
    test->setCondition(enclosure == Enclosure::vanishes
                           ? hasLeft(header, inner)
                           : alwaysTrue(*outer, *again, *outer->getTerminator()));
    structure[outer] = {merge, again};
}

} // namespace tarnwick::msl
