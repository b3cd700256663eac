#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/TargetTransformInfoImpl.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Function.h>

namespace tarnwick::msl {

using namespace llvm;

// Instructions of a loop that is unrolled in full. GPU drivers unroll about so far themselves, but
// no longer see a loop's bound once it leaves from its header (docs/compiler.md).
constexpr unsigned unrolled = 900;

// The same if unrolling turns indices of local arrays into constants: drivers unroll such loops of
// any size, with worse results.
constexpr unsigned unrolledForArrays = 2'400;

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

class ShaderCosts final : public TargetTransformInfoImplCRTPBase<ShaderCosts> {
  public:
    explicit ShaderCosts(const DataLayout& layout) : TargetTransformInfoImplCRTPBase(layout) {}

    void getUnrollingPreferences(Loop* loop, ScalarEvolution&,
                                 TargetTransformInfo::UnrollingPreferences& preferences,
                                 OptimizationRemarkEmitter*) {
        bool walksArray = walksLocalArray(*loop);
        preferences.Threshold = walksArray ? unrolledForArrays : unrolled;
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
