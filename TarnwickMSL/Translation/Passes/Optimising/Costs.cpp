#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/TargetTransformInfoImpl.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Function.h>
#include <llvm/IR/IntrinsicInst.h>

#include <algorithm>

namespace tarnwick::msl {

using namespace llvm;

// Instructions of a loop that is unrolled in full. GPU drivers unroll about so far themselves.
constexpr double unrolled = 900;

// The same if unrolling turns indices of local arrays into constants: drivers unroll such loops of
// any size, with worse results.
constexpr double unrolledForArrays = 2'400;

// The weight up to which unrolling may let a program grow (docs/measurements.md, "Time of the
// driver").
constexpr double largestProgram = 3'000, largestWithArrays = 8'000;

// Rounds that the analysis of LLVM computes with, to find what folds into constants.
constexpr unsigned analysedRounds = 32;

namespace {

bool walksLocalArray(const Loop& loop) {
    return any_of(loop.blocks(), [&](const BasicBlock* block) {
        return any_of(*block, [&](const Instruction& instruction) {
            auto* step = dyn_cast<GetElementPtrInst>(&instruction);
            return step && !step->hasAllConstantIndices() && !loop.isLoopInvariant(step) &&
                   isa<AllocaInst>(getUnderlyingObject(step));
        });
    });
}

// What an instruction costs the packaged CPU driver to compile, relative to a scalar addition. It
// divides vectors into lanes, and writes polynomials for these functions.
unsigned weight(const Instruction& instruction) {
    unsigned lanes = 1;
    if (auto* vector = dyn_cast<FixedVectorType>(instruction.getType()))
        lanes = vector->getNumElements();
    auto* call = dyn_cast<CallBase>(&instruction);
    switch (call ? call->getIntrinsicID() : Intrinsic::not_intrinsic) {
    case Intrinsic::sin:
    case Intrinsic::cos:
    case Intrinsic::exp:
    case Intrinsic::exp2:
    case Intrinsic::log:
    case Intrinsic::log2:
    case Intrinsic::pow:
        return 8 * lanes;
    default:
        return lanes;
    }
}

template <class Blocks> double weightOf(const Blocks& blocks) {
    double sum = 0;
    for (const BasicBlock& block : blocks)
        for (const Instruction& instruction : block)
            sum += weight(instruction);
    return sum;
}

// How many instructions unrolling may make of the loop, so that the program, with all copies of
// this function, does not grow beyond the limit.
double allowance(const Loop& loop, double largest) {
    const Function& function = *loop.getHeader()->getParent();
    double copies = 1;
    function.getFnAttribute(copiesMark).getValueAsString().getAsDouble(copies);
    const double own = weightOf(make_pointee_range(loop.blocks()));
    double size = 0;
    for (const BasicBlock* block : loop.blocks())
        size += static_cast<double>(block->size());
    const double left = largest / copies - (weightOf(function) - own);
    return std::max(0.0, left * size / own);
}

class ShaderCosts final : public TargetTransformInfoImplCRTPBase<ShaderCosts> {
  public:
    explicit ShaderCosts(const DataLayout& layout) : TargetTransformInfoImplCRTPBase(layout) {}

    void getUnrollingPreferences(Loop* loop, ScalarEvolution&,
                                 TargetTransformInfo::UnrollingPreferences& preferences,
                                 OptimizationRemarkEmitter*) {
        bool walksArray = walksLocalArray(*loop);
        double most = walksArray ? std::min(unrolledForArrays, allowance(*loop, largestWithArrays))
                                 : std::min(unrolled, allowance(*loop, largestProgram));
        preferences.Threshold = static_cast<unsigned>(most);
        preferences.MaxIterationsCountToAnalyze = analysedRounds;
        preferences.UpperBound = walksArray;
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
