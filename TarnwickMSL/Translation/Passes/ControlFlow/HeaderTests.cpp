// LLVM rotates loops: the test moves to the end of the round, behind a test of whether the loop
// runs at all. Its passes move more code out of such loops. A structured loop whose values leave
// must however be left from its header (docs/compiler.md, "Shapes that the packaged CPU driver
// needs"), and there the test of the round before is only known as a phi of booleans. Drivers count
// the rounds of a loop by a comparison of an integer phi and a constant; a boolean phi hides them,
// so that they neither unroll the loop nor compute with its counter, and it costs a masked write in
// each round.
//
// In: a loop that is left by its latch alone.
//
//   header: phis, code            latch: next = i + 1; next < n ? header : exit
//
// Out, if the test is true for the first value of the phi:
//
//   header: phis; i < n ? body : exit       body: code       latch: next = i + 1; header
//
// The header runs once more than before. Values that are used after the loop leave through phis of
// the header. The number of rounds is known to ScalarEvolution before and after.
#include "TarnwickMSL/Translation/Passes/ControlFlow/HeaderTests.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/LeavingValues.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/Passes/Optimising/UnrollHints.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ScalarEvolution.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

#include <limits>
#include <optional>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

namespace {

// The loop goes on while the comparison of `counter` and `limit` is true.
struct HeaderTest {
    Loop* loop = nullptr;
    PHINode* counter = nullptr; // null: a new one, from 0 in steps of 1
    CmpInst::Predicate goesOn = CmpInst::ICMP_SLT;
    Value* limit = nullptr;
};

} // namespace

// The comparison that is true while a value that began at `start` has not reached `end`; nothing if
// it passes the end of the type.
static std::optional<CmpInst::Predicate> before(std::int64_t end, bool isRising, bool isSigned) {
    using Signed = std::numeric_limits<std::int32_t>;
    using Unsigned = std::numeric_limits<std::uint32_t>;
    const std::int64_t least = isSigned ? Signed::min() : 0;
    const std::int64_t most = isSigned ? Signed::max() : Unsigned::max();
    if (end < least || end > most)
        return std::nullopt;
    if (isRising)
        return isSigned ? CmpInst::ICMP_SLT : CmpInst::ICMP_ULT;
    return isSigned ? CmpInst::ICMP_SGT : CmpInst::ICMP_UGT;
}

// The test on a phi with constant start and step that is false after `rounds` rounds.
static std::optional<HeaderTest> countingTest(Loop& loop, PHINode& phi, std::uint64_t rounds) {
    auto* start = dyn_cast<ConstantInt>(phi.getIncomingValueForBlock(loop.getLoopPredecessor()));
    const APInt* step = nullptr;
    Value* next = phi.getIncomingValueForBlock(loop.getLoopLatch());
    if (!phi.getType()->isIntegerTy(32) || !start ||
        !match(next, m_c_Add(m_Specific(&phi), m_APInt(step))) || step->isZero())
        return std::nullopt;
    const std::int64_t way = step->getSExtValue() * static_cast<std::int64_t>(rounds);
    for (bool isSigned : {true, false}) {
        const APInt& from = start->getValue();
        const std::int64_t first =
            isSigned ? from.getSExtValue() : static_cast<std::int64_t>(from.getZExtValue());
        if (auto goesOn = before(first + way, way > 0, isSigned))
            return HeaderTest{
                &loop, &phi, *goesOn,
                ConstantInt::get(phi.getType(), static_cast<std::uint64_t>(first + way), true)};
    }
    return std::nullopt;
}

static HeaderTest constantTest(Loop& loop, std::uint64_t rounds) {
    for (PHINode& phi : loop.getHeader()->phis())
        if (auto found = countingTest(loop, phi, rounds))
            return *found;
    auto* word = Type::getInt32Ty(loop.getHeader()->getContext());
    return {&loop, nullptr, CmpInst::ICMP_SLT, ConstantInt::get(word, rounds)};
}

// The comparison of the latch, on the phi that has the compared value in the next round.
static std::optional<HeaderTest> latchTest(Loop& loop, ScalarEvolution& evolution) {
    auto* branch = cast<BranchInst>(loop.getLoopLatch()->getTerminator());
    auto* test = dyn_cast<ICmpInst>(branch->getCondition());
    if (!test)
        return std::nullopt;
    const bool isFirstInside = branch->getSuccessor(0) == loop.getHeader();
    for (unsigned side : {0u, 1u}) {
        Value* limit = test->getOperand(1 - side);
        if (!loop.isLoopInvariant(limit) || !limit->getType()->isIntegerTy())
            continue;
        CmpInst::Predicate goesOn =
            isFirstInside ? test->getPredicate() : test->getInversePredicate();
        if (side == 1)
            goesOn = CmpInst::getSwappedPredicate(goesOn);
        for (PHINode& phi : loop.getHeader()->phis()) {
            if (phi.getIncomingValueForBlock(loop.getLoopLatch()) != test->getOperand(side))
                continue;
            Value* start = phi.getIncomingValueForBlock(loop.getLoopPredecessor());
            if (evolution.isLoopEntryGuardedByCond(&loop, goesOn, evolution.getSCEV(start),
                                                   evolution.getSCEV(limit)))
                return HeaderTest{&loop, &phi, goesOn, limit};
        }
    }
    return std::nullopt;
}

static std::optional<HeaderTest> headerTest(Loop& loop, ScalarEvolution& evolution) {
    BasicBlock* latch = loop.getLoopLatch();
    if (!latch || loop.getExitingBlock() != latch || !loop.getExitBlock() ||
        !loop.getLoopPredecessor() || succ_size(latch) != 2)
        return std::nullopt;
    const unsigned rounds = evolution.getSmallConstantTripCount(&loop);
    if (rounds > 0 && rounds <= std::numeric_limits<std::int32_t>::max())
        return constantTest(loop, rounds);
    return latchTest(loop, evolution);
}

static PHINode* newCounter(Loop& loop, Type* type) {
    IRBuilder<> builder(loop.getHeader(), loop.getHeader()->begin());
    PHINode* counter = builder.CreatePHI(type, 2, "round");
    builder.SetInsertPoint(loop.getLoopLatch()->getTerminator());
    counter->addIncoming(ConstantInt::get(type, 0), loop.getLoopPredecessor());
    counter->addIncoming(builder.CreateNUWAdd(counter, ConstantInt::get(type, 1)),
                         loop.getLoopLatch());
    return counter;
}

static void apply(const HeaderTest& test, DominatorTree& tree, LoopInfo& loops) {
    Loop& loop = *test.loop;
    BasicBlock* header = loop.getHeader();
    BasicBlock* body = SplitBlock(header, header->getFirstNonPHIIt(), &tree, &loops);
    BasicBlock* latch = loop.getLoopLatch();
    BasicBlock* after = SplitEdge(latch, loop.getExitBlock(), &tree, &loops);
    FoldSingleEntryPHINodes(after);
    PHINode* counter = test.counter ? test.counter : newCounter(loop, test.limit->getType());
    leaveThroughPhis(loop, *header, *latch);
    latch->getTerminator()->eraseFromParent();
    BranchInst::Create(header, latch);
    header->getTerminator()->eraseFromParent();
    IRBuilder<> builder(header);
    builder.CreateCondBr(builder.CreateICmp(test.goesOn, counter, test.limit), body, after);
    tree.recalculate(*header->getParent());
}

// Whether every value that leaves the loop may be a phi.
static bool mayLeaveThroughPhis(const Loop& loop) {
    return all_of(leavingValues(loop), [](const Instruction* value) {
        return value->getType()->isSingleValueType() && !value->getType()->isPointerTy();
    });
}

void moveTestsToHeaders(Function& main, Optimiser& optimiser) {
    auto& loops = optimiser.analyses().getResult<LoopAnalysis>(main);
    if (loops.empty())
        return;
    auto& evolution = optimiser.analyses().getResult<ScalarEvolutionAnalysis>(main);
    SmallVector<HeaderTest, 8> tests; // all before the first loop changes
    for (Loop* loop : loops.getLoopsInReverseSiblingPreorder()) {
        setLoopControl(*loop, loopControl(*loop, evolution));
        if (auto test = headerTest(*loop, evolution); test && mayLeaveThroughPhis(*loop))
            tests.push_back(*test);
    }
    DominatorTree tree(main);
    for (const HeaderTest& test : tests)
        apply(test, tree, loops);
    if (!tests.empty())
        optimiser.forget(main);
}

} // namespace tarnwick::msl
