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

#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopShape.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>

namespace tarnwick::msl {

using namespace llvm;

static bool isOutside(const Loop& loop, const Use& use) {
    auto* user = cast<Instruction>(use.getUser());
    auto* phi = dyn_cast<PHINode>(user);
    return !loop.contains(phi ? phi->getIncomingBlock(use) : user->getParent());
}

// The values of the loop that code after it uses, each once.
static SmallVector<Instruction*, 8> leavingValues(const Loop& loop) {
    SmallVector<Instruction*, 8> leaving;
    for (BasicBlock* block : loop.blocks())
        for (Instruction& value : *block)
            if (any_of(value.uses(), [&](const Use& use) { return isOutside(loop, use); }))
                leaving.push_back(&value);
    return leaving;
}

static PHINode* headerPhi(const LoopShape& shape, Value* first, Value* next) {
    auto* phi = PHINode::Create(next->getType(), pred_size(shape.header));
    phi->insertBefore(shape.header->begin());
    for (BasicBlock* from : predecessors(shape.header))
        phi->addIncoming(from == shape.continue_ ? next : first, from);
    return phi;
}

// A header phi that has the value already when the header runs once more, or a new one.
static Value* carried(const LoopShape& shape, Instruction* value) {
    for (PHINode& phi : shape.header->phis())
        if (phi.getIncomingValueForBlock(shape.continue_) == value)
            return &phi;
    return headerPhi(shape, PoisonValue::get(value->getType()), value);
}

static Value* exitCondition(const LoopShape& shape) {
    auto* branch = cast<BranchInst>(shape.continue_->getTerminator());
    IRBuilder<> builder(branch);
    return branch->getSuccessor(1) == shape.header ? branch->getCondition()
                                                   : builder.CreateNot(branch->getCondition());
}

// The driver masks only phis: any other value that is defined in a loop is computed again for
// lanes that have left it. So all that leaves does so through phis of the header, and so does the
// decision to leave.
static void leaveFromHeader(Loop& loop, const LoopShape& shape, ArrayRef<Instruction*> leaving) {
    Value* isDone = exitCondition(shape);
    // All uses first: the carrier of one value may be another value that leaves.
    SmallVector<std::pair<Use*, Value*>, 8> redirected;
    for (Instruction* value : leaving) {
        Value* carrier = carried(shape, value);
        for (Use& use : value->uses())
            if (isOutside(loop, use))
                redirected.emplace_back(&use, carrier);
    }
    for (auto [use, carrier] : redirected)
        use->set(carrier);
    PHINode* done = headerPhi(shape, ConstantInt::getFalse(isDone->getContext()), isDone);
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
        SmallVector<Instruction*, 8> leaving = leavingValues(*loop);
        if (!leaving.empty() || is_contained(enclosed, shape.header)) {
            leaveFromHeader(*loop, shape, leaving);
            tree.recalculate(main);
        }
        structure[shape.header] = {shape.merge, shape.continue_};
    }
    for (BasicBlock* header : enclosed)
        enclose(*header, structure);
}

} // namespace tarnwick::msl
