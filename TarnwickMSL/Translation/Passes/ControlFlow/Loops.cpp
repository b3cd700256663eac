// Loops get the blocks that SPIR-V requires (SPIR-V 1.6, 2.11) and leave in the CPU driver's way.
//
// In: regions as makeRegions leaves them. A loop that is not in `structure` yet is left from its
// latch alone.
//
// Out: each loop has a header with phis and a branch, a body, a continue block that only goes back,
// and a merge block that only this loop's exit reaches; `structure` has header, merge and continue
// target. The rule Form::loops checks this.
//
// There are two forms:
//
//   no value leaves           header -> body ... -> continue -> header or merge
//   values leave, enclosed    header -> body or merge;   body ... -> continue -> header
//
// In the second form all values that are used after the loop leave through phis of the header, and
// the decision to leave is a phi as well, `done`: false at first, then the latch's condition of the
// round before. The loop runs its header once more to leave. The reason is the packaged CPU driver:
// it runs several invocations at once under a mask and masks only phis. Any other value of the loop
// is computed again for lanes that have left, while others still go round (docs/compiler.md,
// "Shapes that the packaged CPU driver needs", 1).
//
// Invariant of the rewriting: uses inside the loop keep the value, uses outside get the carrier
// phi. All uses are collected before the first is changed, since the carrier of one value can be
// another value that leaves (in a Fibonacci loop, a header phi both leaves and carries). A header
// phi that already takes the value from the continue block is the carrier; else a new phi is made,
// whose first operand is poison: no use is reached before the first round.
//
// Loops are worked on from the inside out, so that an inner loop's merge and header are blocks of
// the outer loop's body when that one is split. The set of loops that must be enclosed
// (LoopRows.cpp) is computed before any split, and enclosed last.
#include "TarnwickMSL/Translation/Passes/ControlFlow/Loops.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/LeavingValues.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopShape.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>

namespace tarnwick::msl {

using namespace llvm;

static Value* exitCondition(const LoopShape& shape) {
    auto* branch = cast<BranchInst>(shape.continue_->getTerminator());
    IRBuilder<> builder(branch);
    return branch->getSuccessor(1) == shape.header ? branch->getCondition()
                                                   : builder.CreateNot(branch->getCondition());
}

// The driver masks only phis: any other value that is defined in a loop is computed again for
// lanes that have left it. So all that leaves does so through phis of the header, and so does the
// decision to leave.
static void leaveFromHeader(Loop& loop, const LoopShape& shape) {
    Value* isDone = exitCondition(shape);
    leaveThroughPhis(loop, *shape.header, *shape.continue_);
    PHINode* done = headerPhi(*shape.header, *shape.continue_,
                              ConstantInt::getFalse(isDone->getContext()), isDone);
    shape.continue_->getTerminator()->eraseFromParent();
    BranchInst::Create(shape.header, shape.continue_);
    shape.header->getTerminator()->eraseFromParent();
    BranchInst::Create(shape.merge, shape.body, done, shape.header);
}

void structureLoops(Function& main, Structure& structure) {
    DominatorTree tree(main);
    LoopInfo loops(tree);
    auto outerFirst = loops.getLoopsInPreorder();
    auto enclosed =
        rowEnds(loops, [&](const Loop& loop) { return !structure.contains(loop.getHeader()); });
    for (Loop* loop : reverse(outerFirst)) {
        if (structure.contains(loop->getHeader()))
            continue;
        LoopShape shape = splitLoop(*loop, loop->getHeader()->getFirstNonPHIIt(), tree, loops);
        if (!leavingValues(*loop).empty() || is_contained(enclosed, shape.header)) {
            leaveFromHeader(*loop, shape);
            tree.recalculate(main);
        }
        structure[shape.header] = {shape.merge, shape.continue_};
    }
    for (BasicBlock* header : enclosed)
        enclose(*header, structure);
}

} // namespace tarnwick::msl
