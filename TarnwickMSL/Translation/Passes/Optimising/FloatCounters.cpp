// The number of rounds is found by running the counter: additions of floats are exact functions of
// their operands on every device, except for denormal results, which some flush. If all values are
// integers that a float represents exactly, an integer replaces the counter and the float becomes a
// conversion of it. Otherwise, as in `for (float t = 0; t < 1; t += 0.1)`, the float stays and a
// count of rounds decides the test.
#include "TarnwickMSL/Translation/Passes/Optimising/FloatCounters.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/PatternMatch.h>

#include <cmath>
#include <optional>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

constexpr int mostRounds = 65'536;         // later loops end by the loop budget
constexpr float largestExact = 16'777'216; // all integers up to it are floats

namespace {

// A float phi with a constant start and step.
struct FloatCounter {
    PHINode* phi = nullptr;
    Value* next = nullptr;
    float start = 0, step = 0;
};

// A test of a counter against a constant.
struct FloatTest {
    FloatCounter counter;
    BranchInst* branch = nullptr;
    int rounds = 0; // in which the test lets the loop go on
};

} // namespace

static std::optional<float> constantFloat(const Value* value) {
    auto* constant = dyn_cast<ConstantFP>(value);
    if (!constant || !constant->getType()->isFloatTy() || !constant->getValueAPF().isFinite())
        return std::nullopt;
    return constant->getValueAPF().convertToFloat();
}

static std::optional<FloatCounter> counterOf(const Loop& loop, PHINode& phi) {
    Value* next = phi.getIncomingValueForBlock(loop.getLoopLatch());
    auto start = constantFloat(phi.getIncomingValueForBlock(loop.getLoopPredecessor()));
    Value* step = nullptr;
    const bool isSum = match(next, m_c_FAdd(m_Specific(&phi), m_Value(step)));
    if (!start || (!isSum && !match(next, m_FSub(m_Specific(&phi), m_Value(step)))))
        return std::nullopt;
    auto size = constantFloat(step);
    if (!size || *size == 0)
        return std::nullopt;
    return FloatCounter{&phi, next, *start, isSum ? *size : -*size};
}

// How often the comparison with the limit is as `goesOn` says; nothing if that has no end.
static std::optional<int> roundsOf(const FloatCounter& counter, bool isOfNext,
                                   CmpInst::Predicate goesOn, float limit) {
    float value = counter.start;
    for (int round = 0; round < mostRounds; round++) {
        const float next = value + counter.step;
        const float compared = isOfNext ? next : value;
        if (!FCmpInst::compare(APFloat(compared), APFloat(limit), goesOn))
            return round;
        if (next == value || std::fpclassify(next) == FP_SUBNORMAL || !std::isfinite(next))
            return std::nullopt;
        value = next;
    }
    return std::nullopt;
}

static std::optional<FloatTest> testOf(const Loop& loop, BasicBlock& block) {
    auto* branch = dyn_cast<BranchInst>(block.getTerminator());
    auto* test =
        branch && branch->isConditional() ? dyn_cast<FCmpInst>(branch->getCondition()) : nullptr;
    if (!test || !loop.isLoopExiting(&block))
        return std::nullopt;
    for (unsigned side : {0u, 1u}) {
        auto limit = constantFloat(test->getOperand(1 - side));
        CmpInst::Predicate goesOn = loop.contains(branch->getSuccessor(0))
                                        ? test->getPredicate()
                                        : test->getInversePredicate();
        if (side == 1)
            goesOn = CmpInst::getSwappedPredicate(goesOn);
        for (PHINode& phi : loop.getHeader()->phis()) {
            auto counter = limit ? counterOf(loop, phi) : std::nullopt;
            Value* compared = test->getOperand(side);
            if (!counter || (compared != &phi && compared != counter->next))
                continue;
            if (auto rounds = roundsOf(*counter, compared != &phi, goesOn, *limit))
                return FloatTest{*counter, branch, *rounds};
        }
    }
    return std::nullopt;
}

// Whether the counter has only integers that a float represents exactly.
static bool isInteger(const FloatTest& test) {
    const auto& [phi, next, start, step] = test.counter;
    const float end = start + step * static_cast<float>(test.rounds + 1);
    return std::trunc(start) == start && std::trunc(step) == step &&
           !(start == 0 && std::signbit(start)) && std::fabs(start) <= largestExact &&
           std::fabs(end) <= largestExact;
}

static PHINode* integerCounter(const Loop& loop, int start, int step) {
    IRBuilder<> builder(loop.getHeader(), loop.getHeader()->begin());
    PHINode* counter = builder.CreatePHI(builder.getInt32Ty(), 2, "counter");
    builder.SetInsertPoint(loop.getLoopLatch()->getTerminator());
    counter->addIncoming(ConstantInt::getSigned(counter->getType(), start),
                         loop.getLoopPredecessor());
    counter->addIncoming(
        builder.CreateNSWAdd(counter, ConstantInt::getSigned(counter->getType(), step)),
        loop.getLoopLatch());
    return counter;
}

static void rewrite(const Loop& loop, const FloatTest& test) {
    const bool becomesInteger = isInteger(test);
    const int start = becomesInteger ? static_cast<int>(test.counter.start) : 0;
    const int step = becomesInteger ? static_cast<int>(test.counter.step) : 1;
    PHINode* counter = integerCounter(loop, start, step);
    IRBuilder<> builder(test.branch);
    Value* end = ConstantInt::getSigned(counter->getType(), start + step * test.rounds);
    const bool isFirstInside = loop.contains(test.branch->getSuccessor(0));
    CmpInst::Predicate goesOn = step > 0 ? CmpInst::ICMP_SLT : CmpInst::ICMP_SGT;
    test.branch->setCondition(builder.CreateICmp(
        isFirstInside ? goesOn : CmpInst::getInversePredicate(goesOn), counter, end));
    if (!becomesInteger)
        return;
    builder.SetInsertPoint(loop.getHeader(), loop.getHeader()->getFirstInsertionPt());
    PHINode* old = test.counter.phi;
    old->replaceAllUsesWith(builder.CreateSIToFP(counter, old->getType()));
    old->eraseFromParent();
}

bool countInIntegers(Function& function, FunctionAnalysisManager& analyses) {
    bool isChanged = false;
    for (Loop* loop : analyses.getResult<LoopAnalysis>(function).getLoopsInPreorder()) {
        if (!loop->getLoopLatch() || !loop->getLoopPredecessor())
            continue;
        for (BasicBlock* block : {loop->getHeader(), loop->getLoopLatch()})
            if (auto test = testOf(*loop, *block)) {
                rewrite(*loop, *test);
                isChanged = true;
                break;
            }
    }
    return isChanged;
}

} // namespace tarnwick::msl
