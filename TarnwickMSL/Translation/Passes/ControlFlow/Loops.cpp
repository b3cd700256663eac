// Loops get the blocks that SPIR-V requires (SPIR-V 1.6, 2.11) and leave in the CPU driver's way.
//
// In: regions as makeRegions leaves them. A loop that is not in `structure` yet is left from its
// latch alone.
//
// Out: each loop has a header with phis and a branch, a body, a continue block that only goes back,
// and a merge block that only this loop's exits reach; `structure` has header, merge and continue
// target. The rule Form::loops checks this.
//
// There are three forms:
//
//   no value leaves         header -> body;            body ... -> merge or continue
//   values leave            header -> body or merge;   body ... -> merge or continue
//   values leave short or   header -> body or merge;   body ... -> continue
//   enclosed loops
//
// In the third form all values that are used after the loop leave through phis of the header, and
// the decision to leave is a phi as well, `done`: false at first, then the latch's condition of the
// round before. The loop runs its header once more to leave; and since the packaged CPU driver
// looks only at the end of a round whether an invocation is left in the loop, it runs the whole
// body once more. In the second form, for loops whose body costs more than the writes that it adds
// to each round, the values leave through phis of the merge block. The test in the header never
// leaves: it keeps the driver from replacing these phis by their values. In all forms the continue
// block is empty: the driver runs code in it at the start of the next round.
//
// The reason for the phis is this driver: it runs several invocations at once under a mask and
// masks only phis. Any other value of the loop is computed again for lanes that have left, while
// others still go round (docs/compiler.md, "Shapes that the packaged CPU driver needs", 1).
//
// Invariant of the rewriting, in the third form: uses inside the loop keep the value, uses outside
// get the carrier phi. All uses are collected before the first is changed, since the carrier of one
// value can be another value that leaves (in a Fibonacci loop, a header phi both leaves and
// carries). A header phi that already takes the value from the continue block is the carrier; else
// a new phi is made, whose first operand is poison: no use is reached before the first round.
//
// Loops are worked on from the inside out, so that an inner loop's merge and header are blocks of
// the outer loop's body when that one is split. The set of loops that must be enclosed
// (LoopRows.cpp) is computed before any split, and enclosed last.
#include "TarnwickMSL/Translation/Passes/ControlFlow/Loops.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/LeavingValues.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopShape.h"

#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

#include <algorithm>

namespace tarnwick::msl {

using namespace llvm;

// The test goes from the continue block to the end of the body.
static void leaveAtEnd(const LoopShape& shape) {
    auto* branch = cast<BranchInst>(shape.continue_->getTerminator());
    const bool isFirstBack = branch->getSuccessor(0) == shape.header;
    shape.latch->getTerminator()->eraseFromParent();
    BranchInst::Create(isFirstBack ? shape.continue_ : shape.merge,
                       isFirstBack ? shape.merge : shape.continue_, branch->getCondition(),
                       shape.latch);
    branch->eraseFromParent();
    BranchInst::Create(shape.header, shape.continue_);
    shape.merge->replacePhiUsesWith(shape.continue_, shape.latch);
}

static std::size_t lanesOf(const Value& value) {
    auto* vector = dyn_cast<FixedVectorType>(value.getType());
    return vector ? vector->getNumElements() : 1;
}

// A guess at the rounds of the invocation of a group that stays longest: a part of the constant
// that an integer is compared with.
static std::uint64_t usualRounds(const Loop& loop) {
    constexpr std::uint64_t least = 2, most = 20, part = 4;
    std::uint64_t bound = most * part;
    for (const BasicBlock* block : loop.blocks())
        for (const Instruction& instruction : *block)
            if (auto* test = dyn_cast<ICmpInst>(&instruction))
                if (auto* limit = dyn_cast<ConstantInt>(test->getOperand(1));
                    limit && test->getOperand(0)->getType()->isIntegerTy(32))
                    bound = std::min(bound, limit->getLimitedValue());
    return std::clamp(bound / part, least, most);
}

// Whether one round less is worth more than what the second form adds to each round: the counter,
// and a masked write for each lane that leaves.
static bool isLong(const Loop& loop) {
    constexpr std::size_t counting = 5, writing = 4; // operations
    std::size_t round = 0, added = counting;
    for (const BasicBlock* block : loop.blocks())
        for (const Instruction& instruction : *block)
            round += isa<PHINode>(instruction) ? 0 : lanesOf(instruction);
    for (const Instruction* value : leavingValues(loop))
        added += writing * lanesOf(*value);
    return round > added * usualRounds(loop);
}

static void leaveThroughMerge(const Loop& loop, const LoopShape& shape) {
    FoldSingleEntryPHINodes(shape.merge);
    for (Instruction* value : leavingValues(loop)) {
        SmallVector<Use*, 8> uses;
        for (Use& use : value->uses())
            if (isOutside(loop, use))
                uses.push_back(&use);
        auto* phi = PHINode::Create(value->getType(), 2, "", shape.merge->begin());
        for (Use* use : uses)
            use->set(phi);
        phi->addIncoming(Constant::getNullValue(value->getType()), shape.header);
        phi->addIncoming(value, shape.latch);
    }
    Value* stays = alwaysTrue(*shape.header, *shape.continue_, *shape.latch->getTerminator());
    shape.header->getTerminator()->eraseFromParent();
    BranchInst::Create(shape.body, shape.merge, stays, shape.header);
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
    const auto ends = rowEnds(loops);
    SmallPtrSet<const BasicBlock*, 4> leftFromHeader; // those that the driver may unroll
    for (const RowEnd& end : ends)
        if (end.enclosure == Enclosure::vanishes)
            leftFromHeader.insert(end.header);
    for (Loop* loop : reverse(outerFirst)) {
        if (structure.contains(loop->getHeader()))
            continue;
        LoopShape shape = splitLoop(*loop, loop->getHeader()->getFirstNonPHIIt(), tree, loops);
        const bool keepsValues = leavingValues(*loop).empty();
        if (leftFromHeader.contains(shape.header) || (!keepsValues && !isLong(*loop))) {
            leaveFromHeader(*loop, shape);
        } else {
            leaveAtEnd(shape);
            if (!keepsValues)
                leaveThroughMerge(*loop, shape);
        }
        tree.recalculate(main);
        structure[shape.header] = {shape.merge, shape.continue_};
    }
    for (const RowEnd& end : ends)
        enclose(*end.header, end.enclosure, structure);
}

} // namespace tarnwick::msl
