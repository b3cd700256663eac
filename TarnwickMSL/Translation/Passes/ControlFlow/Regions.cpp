// Any reducible control flow becomes a nest of regions.
//
// In: flow as normaliseFlow leaves it (one return, loops with one entry, one latch, an exit), with
// the loop budget's exits. Branches may go anywhere: out of several loops, into the middle of what
// another branch skips.
//
// Out: each region has one entry and one exit. A loop is left by one edge: from its latch, or from
// its header if the source's loop was. Loops that are left from their headers are in `structure`
// already. The rule Form::exits checks this. `loops` and `selections` then only give constructs
// blocks of their own.
//
// LLVM does the hard part. UnifyLoopExits gives a loop with several exits one exit block, where a
// number says which exit was meant. StructurizeCFG turns the rest into nested if-then with guards:
// a block that two branches reach gets a condition "comes here" as a phi of booleans.
//
// StructurizeCFG moves every loop's exit test into the latch. For a loop that its header alone
// leaves, as `for` and `while` loops do, this is a loss: the packaged CPU driver wants the test in
// the header (docs/compiler.md, "Shapes that the packaged CPU driver needs"), and a test in the
// latch must be carried round the loop in a phi. So the test is moved out of the way:
// - markLoops moves such a test to the latch, where it is the operand of a call of `marker`. The
//   call is opaque, so no pass merges or simplifies the condition.
// - restoreTests finds the marker in the latch's condition and moves the test back into the header.
//
// Invariant between the two: a round of a marked loop runs its body before the test. That is not
// the program's meaning, so nothing may be derived from it. The simplification, DCE and the
// promotion of the loop counter (LoopBudget) run after restoreTests for that reason: in between,
// code that the test guards looks as if it ran in every round, and a division by a value that the
// test keeps from zero could be moved or folded.
//
// A marked header must not have effects or convergent calls, since it runs once more than the body;
// its values, phis aside, must not be used outside the loop, since those need the phis that `loops`
// makes. The counter's store is exempt: promoteCounters makes a value of it.
//
// Essays of the neighbours: LoopBudget.cpp (before), Loops.cpp (after).
#include "TarnwickMSL/Translation/Passes/ControlFlow/Regions.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/Flow.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LeavingValues.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopBudget.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopShape.h"
#include "TarnwickMSL/Translation/Passes/Memory/NearAddresses.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"

#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/InstructionSimplify.h>
#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Transforms/Scalar/DCE.h>
#include <llvm/Transforms/Scalar/StructurizeCFG.h>
#include <llvm/Transforms/Utils/LoopSimplify.h>
#include <llvm/Transforms/Utils/UnifyLoopExits.h>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

// A loop that its header alone leaves, by a test that has no effect, has the shape that the driver
// needs as it is. StructurizeCFG knows only loops that their latch leaves; so while it works, the
// test stands there: `markLoops` moves it, as the call of a marker that keeps the condition, and
// `restoreTest` moves it back.
static constexpr StringLiteral marker = "msl.leaves_from_header";

static bool hasEffects(const Instruction& instruction) {
    auto* call = dyn_cast<CallBase>(&instruction);
    auto* store = dyn_cast<StoreInst>(&instruction);
    return (instruction.mayHaveSideEffects() &&
            !(store && isCounter(*store->getPointerOperand()))) ||
           (call && call->isConvergent());
}

static bool leavesFromHeader(const Loop& loop) {
    BasicBlock* header = loop.getHeader();
    BasicBlock* latch = loop.getLoopLatch();
    if (loop.getExitingBlock() != header || !loop.getExitBlock() || !latch || latch == header ||
        succ_size(latch) != 1)
        return false;
    return none_of(*header, [&](Instruction& value) {
        if (isa<PHINode>(value) || value.isTerminator())
            return false;
        return hasEffects(value) || any_of(value.users(), [&](User* user) {
                   return !loop.contains(cast<Instruction>(user));
               });
    });
}

static void moveTestToLatch(Loop& loop) {
    BasicBlock *header = loop.getHeader(), *latch = loop.getLoopLatch();
    BasicBlock* exit = loop.getExitBlock();
    auto* test = cast<BranchInst>(header->getTerminator());
    unsigned inside = test->getSuccessor(0) == exit ? 1 : 0;
    IRBuilder<> builder(latch->getTerminator());
    Value* stays = test->getCondition();
    if (inside == 1) {
        builder.SetInsertPoint(test);
        stays = builder.CreateNot(stays);
        builder.SetInsertPoint(latch->getTerminator());
    }
    Module& module = *header->getModule();
    FunctionCallee mark =
        module.getOrInsertFunction(marker, builder.getInt1Ty(), builder.getInt1Ty());
    builder.CreateCondBr(builder.CreateCall(mark, stays), header, exit);
    latch->getTerminator()->eraseFromParent();
    BranchInst::Create(test->getSuccessor(inside), header);
    test->eraseFromParent();
    for (PHINode& phi : exit->phis())
        phi.replaceIncomingBlockWith(header, latch);
}

static void markLoops(Function& main, Optimiser& optimiser) {
    auto& loops = optimiser.analyses().getResult<LoopAnalysis>(main);
    for (Loop* loop : loops.getLoopsInPreorder())
        if (leavesFromHeader(*loop))
            moveTestToLatch(*loop);
    optimiser.forget(main);
}

// The call of the marker that the loop's latch tests, directly or negated; null for other loops.
static CallInst* markerOf(const Loop& loop) {
    auto* branch = cast<BranchInst>(loop.getLoopLatch()->getTerminator());
    Value* condition = branch->getCondition();
    if (Value* negated = nullptr; match(condition, m_Not(m_Value(negated))))
        condition = negated;
    auto* call = dyn_cast<CallInst>(condition);
    return call && call->getCalledFunction() && call->getCalledFunction()->getName() == marker
               ? call
               : nullptr;
}

static void restoreTest(const LoopShape& shape, CallInst& mark) {
    Value* stays = mark.getArgOperand(0);
    shape.continue_->getTerminator()->eraseFromParent();
    BranchInst::Create(shape.header, shape.continue_);
    shape.header->getTerminator()->eraseFromParent();
    BranchInst::Create(shape.body, shape.merge, stays, shape.header);
    SmallVector<Instruction*, 2> uses; // a negation, which nothing tests any more
    for (User* user : mark.users())
        uses.push_back(cast<Instruction>(user));
    for (Instruction* use : uses)
        use->eraseFromParent();
    mark.eraseFromParent();
}

// StructurizeCFG carries values of the body round the loop around this one if guards separate a
// value from its use. It does so while each loop runs its body before its test. Values of the last
// round now leave through the header.
static void carryValuesOfBody(const Loop& loop, const LoopShape& shape) {
    SmallVector<Instruction*, 8> values = leavingValues(loop);
    erase_if(values, [&](Instruction* value) { return value->getParent() == shape.header; });
    leaveThroughPhis(loop, *shape.header, *shape.continue_, values);
}

// Loops that leave from their headers go back to it, all of them before the counter of rounds
// becomes values: until then the flow of control is not the program's own.
static void restoreTests(Function& main, Structure& structure) {
    DominatorTree tree(main);
    LoopInfo loops(tree);
    for (Loop* loop : loops.getLoopsInPreorder())
        if (CallInst* mark = markerOf(*loop)) {
            LoopShape shape =
                splitLoop(*loop, loop->getHeader()->getTerminator()->getIterator(), tree, loops);
            restoreTest(shape, *mark);
            carryValuesOfBody(*loop, shape);
            tree.recalculate(main);
            structure[shape.header] = {shape.merge, shape.continue_};
        }
}

// Simplifies what StructurizeCFG and the steps since `finish` have made, phis, conditions, lanes
// and integers, and what uses it. Arithmetic of floating-point numbers, which takes the most time
// to look at, is as `finish` left it.
static void simplifyMade(Function& main, Optimiser& optimiser) {
    const SimplifyQuery query(main.getDataLayout(), nullptr,
                              &optimiser.analyses().getResult<DominatorTreeAnalysis>(main));
    SmallSetVector<Instruction*, 32> open; // the first instruction of the function last
    for (BasicBlock& block : reverse(main))
        for (Instruction& instruction : reverse(block))
            if (isa<PHINode>(instruction) || !isa<FPMathOperator>(instruction))
                open.insert(&instruction);
    while (!open.empty()) {
        Instruction* instruction = open.pop_back_val();
        Value* simple = simplifyInstruction(instruction, query);
        if (!simple)
            continue;
        for (User* user : instruction->users())
            open.insert(cast<Instruction>(user));
        instruction->replaceAllUsesWith(simple);
    }
}

void makeRegions(Function& main, Structure& structure, Optimiser& optimiser) {
    if (isPlain(main))
        return;
    // It joins exits of a loop and moves the code before their tests out of the loop, steps to
    // addresses too.
    if (!LoopSimplifyPass().run(main, optimiser.analyses()).areAllPreserved())
        bringPointersBack(main);
    optimiser.forget(main);
    markLoops(main, optimiser);
    FunctionPassManager passes;
    passes.addPass(UnifyLoopExitsPass());
    passes.addPass(StructurizeCFGPass());
    passes.run(main, optimiser.analyses());
    dropEmptyBranches(main);
    restoreTests(main, structure);
    // No sooner: while the tests are away, code that they guard looks as if it always ran.
    optimiser.forget(main);
    simplifyMade(main, optimiser);
    DCEPass().run(main, optimiser.analyses());
    optimiser.forget(main);
    promoteCounters(main);
}

} // namespace tarnwick::msl
