// LLVM's own passes do the hard part: irreducible loops get one entry (FixIrreducible), loops one
// exit (UnifyLoopExits), and regions a nest (StructurizeCFG, after which each loop's one exit test
// stands in its latch). What is left is to give every construct blocks of its own: a loop a header
// that holds only phis and a branch, a continue target, a merge block; a selection a merge block
// that no other selection uses.
#include "TarnwickMSL/Translation/Passes/ControlFlow/Structure.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopBudget.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/VectorPhis.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/PostDominators.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Transforms/Scalar/DCE.h>
#include <llvm/Transforms/Scalar/InstSimplifyPass.h>
#include <llvm/Transforms/Scalar/StructurizeCFG.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>
#include <llvm/Transforms/Utils/FixIrreducible.h>
#include <llvm/Transforms/Utils/Local.h>
#include <llvm/Transforms/Utils/LoopSimplify.h>
#include <llvm/Transforms/Utils/LowerSwitch.h>
#include <llvm/Transforms/Utils/UnifyLoopExits.h>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

// Code that cannot be reached in a defined program ends the invocation.
static void returnWhereUnreachable(Function& main) {
    for (BasicBlock& block : main)
        if (auto* end = dyn_cast<UnreachableInst>(block.getTerminator())) {
            ReturnInst::Create(main.getContext(), nullptr, end->getIterator());
            end->eraseFromParent();
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
// after it, and the function's end, would stand outside every region.
static void giveExits(const LoopInfo& loops, BasicBlock& end) {
    for (Loop* loop : loops.getLoopsInPreorder()) {
        if (!loop->hasNoExitBlocks())
            continue;
        BasicBlock* latch = loop->getLoopLatch();
        latch->getTerminator()->eraseFromParent();
        BranchInst::Create(loop->getHeader(), &end, ConstantInt::getTrue(end.getContext()), latch);
    }
}

static bool isPlain(Function& main) {
    return all_of(main, [](BasicBlock& block) { return succ_size(&block) < 2; });
}

// Branches with one target in effect are no headers.
static void dropEmptyBranches(Function& main) {
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
    removeUnreachableBlocks(main);
    BasicBlock* end = onlyReturn(main);
    dropEmptyBranches(main);
    optimiser.forget(main);
    if (isPlain(main))
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
    auto enclosed = rowEnds(loops, [](const Loop&) { return true; });
    for (Loop* loop : loops.getLoopsInPreorder())
        if (leavesFromHeader(*loop) && !is_contained(enclosed, loop->getHeader()))
            moveTestToLatch(*loop);
    optimiser.forget(main);
}

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

// One loop in the making.
struct LoopShape {
    BasicBlock* header = nullptr; // phis and a branch
    BasicBlock* body = nullptr;   // what the header held
    BasicBlock* latch = nullptr;  // branches to continue_
    BasicBlock* continue_ = nullptr;
    BasicBlock* merge = nullptr;
};

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

static LoopShape splitLoop(Loop& loop, DominatorTree& tree, LoopInfo& loops) {
    LoopShape shape;
    shape.header = loop.getHeader();
    BasicBlock* latch = loop.getLoopLatch();
    BasicBlock* exit = loop.getExitBlock();
    if (!latch || !exit || loop.getExitingBlock() != latch)
        throw CompilerFault("A loop is not left from its latch alone.");
    bool isMarked = markerOf(loop) != nullptr;
    BasicBlock::iterator split =
        isMarked ? shape.header->getTerminator()->getIterator() : shape.header->getFirstNonPHIIt();
    shape.body = SplitBlock(shape.header, split, &tree, &loops);
    shape.latch = latch == shape.header ? shape.body : latch;
    shape.continue_ = SplitBlock(shape.latch, shape.latch->getTerminator(), &tree, &loops);
    shape.merge = SplitEdge(shape.continue_, exit, &tree, &loops);
    shape.continue_->setName("continue");
    shape.merge->setName("merge");
    return shape;
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

// Loops that leave from their headers go back to it, all of them before the counter of rounds
// becomes values: until then the flow of control is not the program's own.
static void restoreTests(Function& main, Structure& structure) {
    DominatorTree tree(main);
    LoopInfo loops(tree);
    for (Loop* loop : loops.getLoopsInPreorder())
        if (CallInst* mark = markerOf(*loop)) {
            LoopShape shape = splitLoop(*loop, tree, loops);
            restoreTest(shape, *mark);
            tree.recalculate(main);
            structure[shape.header] = {shape.merge, shape.continue_};
        }
}

static void structureLoops(Function& main, Structure& structure) {
    DominatorTree tree(main);
    LoopInfo loops(tree);
    auto outerFirst = loops.getLoopsInPreorder();
    auto enclosed =
        rowEnds(loops, [&](const Loop& loop) { return !structure.contains(loop.getHeader()); });
    for (Loop* loop : reverse(outerFirst)) {
        if (structure.contains(loop->getHeader()))
            continue;
        LoopShape shape = splitLoop(*loop, tree, loops);
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

static bool isSelection(const BasicBlock& block, const Structure& structure,
                        const DenseMap<const BasicBlock*, bool>& continues) {
    return succ_size(&block) == 2 && !structure.contains(&block) && !continues.contains(&block);
}

static void structureSelections(Function& main, Structure& structure) {
    DominatorTree tree(main);
    PostDominatorTree postTree(main);
    DenseMap<const BasicBlock*, bool> continues;
    for (auto& [header, merge] : structure)
        continues[merge.continueTarget] = true;
    SmallVector<BasicBlock*, 32> headers;
    for (DomTreeNode* node : post_order(tree.getRootNode()))
        if (isSelection(*node->getBlock(), structure, continues))
            headers.push_back(node->getBlock());
    for (BasicBlock* header : headers) {
        BasicBlock* end = postTree.getNode(header)->getIDom()->getBlock();
        SmallVector<BasicBlock*, 4> own;
        for (BasicBlock* from : predecessors(end))
            if (tree.dominates(header, from))
                own.push_back(from);
        bool isOwn = own.size() == pred_size(end) && !structure.lookup(end).continueTarget;
        structure[header] = {isOwn ? end : SplitBlockPredecessors(end, own, ".merge", &tree),
                             nullptr};
    }
}

Structure structureFlow(Function& main, Optimiser& optimiser) {
    Structure structure;
    if (isPlain(main))
        return structure;
    LoopSimplifyPass().run(main, optimiser.analyses());
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
    InstSimplifyPass().run(main, optimiser.analyses());
    DCEPass().run(main, optimiser.analyses());
    optimiser.forget(main);
    promoteCounter(main);
    structureLoops(main, structure);
    structureSelections(main, structure);
    splitVectorPhis(main, structure);
    DCEPass().run(main, optimiser.analyses());
    return structure;
}

} // namespace tarnwick::msl
