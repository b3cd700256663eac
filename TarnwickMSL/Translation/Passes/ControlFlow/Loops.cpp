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
    // All uses first: what carries one value may be another that leaves.
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
