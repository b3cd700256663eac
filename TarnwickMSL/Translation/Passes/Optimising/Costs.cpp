#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"

#include "TarnwickMSL/Translation/Passes/Optimising/Weights.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/TargetTransformInfoImpl.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Function.h>
#include <llvm/IR/IntrinsicInst.h>

#include <algorithm>
#include <limits>

namespace tarnwick::msl {

using namespace llvm;

// Instructions of a loop that is unrolled in full. GPU drivers unroll about so far themselves.
constexpr double unrolled = 900;

// The same if unrolling turns indices of local arrays and tables into constants: drivers unroll
// such loops of any size, with worse results.
constexpr double unrolledForArrays = 2'400;

// The weight that may be left of a loop over a local array after all that is known folds.
constexpr double leftForArrays = 4'500;

// The weight up to which unrolling may let a program grow (docs/measurements.md, "Time of the
// driver").
constexpr double largestProgram = 3'000, largestWithArrays = 8'000;

// Rounds that the analysis of LLVM computes with, to find what folds into constants.
constexpr unsigned analysedRounds = 32;

// The weight left above which that analysis is not worth its time: a round of it takes as long as
// ten of cleaning.
constexpr double analysed = 1.5 * unrolled;

// Rounds up to which a loop that may end sooner becomes straight code.
constexpr unsigned fewRounds = 10;

namespace {

bool isLocalOrTable(const Value& root) {
    auto* global = dyn_cast<GlobalVariable>(&root);
    return isa<AllocaInst>(root) || (global && global->isConstant() && global->hasInitializer());
}

bool walksArray(const Loop& loop) {
    return any_of(loop.blocks(), [&](const BasicBlock* block) {
        return any_of(*block, [&](const Instruction& instruction) {
            auto* step = dyn_cast<GetElementPtrInst>(&instruction);
            return step && !step->hasAllConstantIndices() && !loop.isLoopInvariant(step) &&
                   isLocalOrTable(*getUnderlyingObject(step));
        });
    });
}

// The weight that the loop may have once it is unrolled, so that the program, with all copies of
// this function, does not grow beyond the limit.
double room(const Loop& loop, double largest) {
    const Function& function = *loop.getHeader()->getParent();
    double copies = 1;
    function.getFnAttribute(copiesMark).getValueAsString().getAsDouble(copies);
    return std::max(0.0, largest / copies - (weightOf(function) - weightOf(loop)));
}

// How many instructions unrolling may make of the loop, before they fold.
double allowance(const Loop& loop, double room) {
    double size = 0;
    for (const BasicBlock* block : loop.blocks())
        size += static_cast<double>(block->size());
    return room * size / weightOf(loop);
}

// The rounds of a loop that becomes straight code: all of its rounds, or the most of them where it
// may end sooner. 0 if there is no such number, or if ending sooner may save much: straight code
// runs every round.
unsigned straightRounds(const Loop& loop, ScalarEvolution& evolution) {
    if (const unsigned rounds = evolution.getSmallConstantTripCount(&loop))
        return rounds;
    const unsigned most = evolution.getSmallConstantMaxTripCount(&loop);
    return most <= fewRounds ? most : 0;
}

class ShaderCosts final : public TargetTransformInfoImplCRTPBase<ShaderCosts> {
  public:
    explicit ShaderCosts(const DataLayout& layout) : TargetTransformInfoImplCRTPBase(layout) {}

    void getUnrollingPreferences(Loop* loop, ScalarEvolution& evolution,
                                 TargetTransformInfo::UnrollingPreferences& preferences,
                                 OptimizationRemarkEmitter*) {
        const bool isForArray = walksArray(*loop);
        const double most = room(*loop, isForArray ? largestWithArrays : largestProgram);
        const unsigned rounds = straightRounds(*loop, evolution);
        const double left = rounds > 0 ? rounds * weightLeft(*loop, evolution) : most + 1;
        preferences.Threshold =
            left <= std::min(isForArray ? leftForArrays : unrolled, most)
                ? std::numeric_limits<unsigned>::max() / 4
                : static_cast<unsigned>(
                      std::min(isForArray ? unrolledForArrays : unrolled, allowance(*loop, most)));
        preferences.MaxIterationsCountToAnalyze = left <= analysed ? analysedRounds : 0;
        preferences.UpperBound = isForArray;
        preferences.MaxUpperBound = mostArrayRounds;
        preferences.MaxPercentThresholdBoost = 200;
    }
};

} // namespace

TargetIRAnalysis shaderCosts() {
    return TargetIRAnalysis([](const Function& function) {
        return TargetTransformInfo(ShaderCosts(function.getParent()->getDataLayout()));
    });
}

} // namespace tarnwick::msl
