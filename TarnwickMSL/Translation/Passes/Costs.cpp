#include "TarnwickMSL/Translation/Passes/Costs.h"

#include <llvm/Analysis/TargetTransformInfoImpl.h>
#include <llvm/IR/Function.h>

namespace tarnwick::msl {

using namespace llvm;

// Instructions of a loop that is unrolled in full. GPU drivers unroll about so far themselves, but
// no longer see a loop's bound once it leaves from its header (docs/compiler.md).
constexpr unsigned unrolled = 700;

namespace {

class ShaderCosts final : public TargetTransformInfoImplCRTPBase<ShaderCosts> {
  public:
    explicit ShaderCosts(const DataLayout& layout) : TargetTransformInfoImplCRTPBase(layout) {}

    void getUnrollingPreferences(Loop*, ScalarEvolution&,
                                 TargetTransformInfo::UnrollingPreferences& preferences,
                                 OptimizationRemarkEmitter*) {
        preferences.Threshold = unrolled;
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
