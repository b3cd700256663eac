// ScalarEvolution writes x % 7 as x - x / 7 * 7 and knows no range of it, so it has no maximum for
// a loop that counts up to such a limit. The known bits of the limit give one.
#include "TarnwickMSL/Translation/Passes/ControlFlow/Rounds.h"

#include <llvm/Analysis/ScalarEvolutionExpressions.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Instructions.h>
#include <llvm/Support/KnownBits.h>

#include <algorithm>
#include <limits>
#include <optional>

namespace tarnwick::msl {

using namespace llvm;

namespace {

// The loop goes on while `counter` < `limit`.
struct RisingTest {
    const SCEVAddRecExpr* counter = nullptr;
    const Value* limit = nullptr;
    bool isSigned = false;
};

} // namespace

static std::optional<RisingTest> risingTest(const Loop& loop, const BasicBlock& exit,
                                            ScalarEvolution& evolution) {
    auto* branch = dyn_cast<BranchInst>(exit.getTerminator());
    auto* test =
        branch && branch->isConditional() ? dyn_cast<ICmpInst>(branch->getCondition()) : nullptr;
    if (!test || !test->getOperand(0)->getType()->isIntegerTy(32))
        return std::nullopt;
    CmpInst::Predicate goesOn =
        loop.contains(branch->getSuccessor(0)) ? test->getPredicate() : test->getInversePredicate();
    Value *counter = test->getOperand(0), *limit = test->getOperand(1);
    if (loop.isLoopInvariant(counter)) {
        std::swap(counter, limit);
        goesOn = CmpInst::getSwappedPredicate(goesOn);
    }
    auto* steps = dyn_cast<SCEVAddRecExpr>(evolution.getSCEV(counter));
    if (!steps || steps->getLoop() != &loop || !steps->isAffine() || !loop.isLoopInvariant(limit) ||
        !(goesOn == CmpInst::ICMP_SLT || goesOn == CmpInst::ICMP_ULT))
        return std::nullopt;
    return RisingTest{steps, limit, goesOn == CmpInst::ICMP_SLT};
}

// The counter cannot wrap around before the test sees it at the limit or past it.
static std::uint64_t mostRounds(const RisingTest& test, const DataLayout& layout,
                                ScalarEvolution& evolution) {
    auto* constant = dyn_cast<SCEVConstant>(test.counter->getStepRecurrence(evolution));
    if (!constant || !constant->getAPInt().isStrictlyPositive())
        return 0;
    const SCEV* start = test.counter->getStart();
    const KnownBits bits = computeKnownBits(test.limit, layout);
    const std::int64_t step = constant->getAPInt().getSExtValue();
    const std::int64_t first =
        test.isSigned
            ? evolution.getSignedRangeMin(start).getSExtValue()
            : static_cast<std::int64_t>(evolution.getUnsignedRangeMin(start).getZExtValue());
    const std::int64_t limit = test.isSigned
                                   ? bits.getSignedMaxValue().getSExtValue()
                                   : static_cast<std::int64_t>(bits.getMaxValue().getZExtValue());
    const std::int64_t last = test.isSigned ? std::numeric_limits<std::int32_t>::max()
                                            : std::numeric_limits<std::uint32_t>::max();
    if (limit > last - step)
        return 0;
    return limit <= first ? 1 : static_cast<std::uint64_t>((limit - first + step - 1) / step) + 1;
}

std::uint64_t mostRounds(const Loop& loop, ScalarEvolution& evolution, const DominatorTree& tree) {
    std::uint64_t fewest = evolution.getSmallConstantMaxTripCount(&loop);
    const BasicBlock* latch = loop.getLoopLatch();
    SmallVector<BasicBlock*, 4> exits;
    loop.getExitingBlocks(exits);
    for (const BasicBlock* exit : exits) {
        if (!latch || !tree.dominates(exit, latch))
            continue;
        const auto test = risingTest(loop, *exit, evolution);
        const std::uint64_t most = test ? mostRounds(*test, exit->getDataLayout(), evolution) : 0;
        if (most != 0)
            fewest = fewest == 0 ? most : std::min(fewest, most);
    }
    return fewest;
}

} // namespace tarnwick::msl
