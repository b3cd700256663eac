#include "TarnwickMSL/Translation/Passes/ControlFlow/Flow.h"

#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/Instructions.h>
#include <llvm/Transforms/Utils/FixIrreducible.h>
#include <llvm/Transforms/Utils/Local.h>
#include <llvm/Transforms/Utils/LoopSimplify.h>
#include <llvm/Transforms/Utils/LowerSwitch.h>

namespace tarnwick::msl {

using namespace llvm;

// Code that cannot be reached in a defined program ends the invocation.
static void returnWhereUnreachable(Function& main) {
    for (BasicBlock& block : main)
        if (auto* end = dyn_cast<UnreachableInst>(block.getTerminator())) {
            ReturnInst::Create(main.getContext(), nullptr, end->getIterator());
            end->eraseFromParent();
        }
}

// A branch on an undefined value is not reached either, so each way is right. The optimiser removes
// most of them.
static void chooseWhereUndefined(Function& main) {
    for (BasicBlock& block : main) {
        Instruction* end = block.getTerminator();
        if (!isa<BranchInst, SwitchInst>(end) || !isa<UndefValue>(end->getOperand(0)))
            continue;
        end->setOperand(0, Constant::getNullValue(end->getOperand(0)->getType()));
        ConstantFoldTerminator(&block);
    }
}

static BasicBlock* onlyReturn(Function& main) {
    auto* end = BasicBlock::Create(main.getContext(), "end", &main);
    for (BasicBlock& block : main)
        if (isa_and_nonnull<ReturnInst>(block.getTerminator())) {
            block.getTerminator()->eraseFromParent();
            BranchInst::Create(end, &block);
        }
    ReturnInst::Create(main.getContext(), end);
    return end;
}

// A loop that nothing leaves gets an exit in its latch that is never taken: without one the code
// after it, and the end of the function, would be outside every region.
static void giveExits(const LoopInfo& loops, BasicBlock& end) {
    for (Loop* loop : loops.getLoopsInPreorder()) {
        if (!loop->hasNoExitBlocks())
            continue;
        BasicBlock* latch = loop->getLoopLatch();
        latch->getTerminator()->eraseFromParent();
        BranchInst::Create(loop->getHeader(), &end, ConstantInt::getTrue(end.getContext()), latch);
    }
}

bool isPlain(const Function& main) {
    return all_of(main, [](const BasicBlock& block) { return succ_size(&block) < 2; });
}

void dropEmptyBranches(Function& main) {
    for (BasicBlock& block : main) {
        auto* branch = dyn_cast<BranchInst>(block.getTerminator());
        if (!branch || !branch->isConditional() ||
            branch->getSuccessor(0) != branch->getSuccessor(1))
            continue;
        for (PHINode& phi : branch->getSuccessor(0)->phis())
            phi.removeIncomingValue(&block, false);
        BranchInst::Create(branch->getSuccessor(0), branch->getIterator());
        branch->eraseFromParent();
    }
}

void normaliseFlow(Function& main, Optimiser& optimiser) {
    returnWhereUnreachable(main);
    chooseWhereUndefined(main);
    removeUnreachableBlocks(main);
    BasicBlock* end = onlyReturn(main);
    dropEmptyBranches(main);
    optimiser.forget(main);
    if (isPlain(main) && optimiser.analyses().getResult<LoopAnalysis>(main).empty())
        return;
    FunctionPassManager passes;
    passes.addPass(LowerSwitchPass());
    passes.addPass(LoopSimplifyPass());
    passes.addPass(FixIrreduciblePass());
    passes.addPass(LoopSimplifyPass());
    passes.run(main, optimiser.analyses());
    giveExits(optimiser.analyses().getResult<LoopAnalysis>(main), *end);
    optimiser.forget(main);
}

} // namespace tarnwick::msl
