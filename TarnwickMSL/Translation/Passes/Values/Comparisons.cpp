// Clang widens the i1 lanes of a vector comparison by sign; here they become a zero extension.
//
// A vector ?: is code generation's own and needs the ones: it tests the condition's sign bit,
// widens that test by sign, and uses it once as a mask and once negated. Its condition now comes
// in with lanes of 0 and 1, so its test of the sign becomes one against zero, and its mask stays.
#include "TarnwickMSL/Translation/Passes/Values/Comparisons.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/PatternMatch.h>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

static bool isMaskOfSelection(SExtInst& extension) {
    Value* tested = nullptr;
    CmpInst::Predicate predicate = CmpInst::BAD_ICMP_PREDICATE;
    if (!match(extension.getOperand(0), m_ICmp(predicate, m_Value(tested), m_Zero())) ||
        predicate != CmpInst::ICMP_SLT || !extension.hasNUses(2))
        return false;
    bool isNegated = false, isMask = false;
    for (User* user : extension.users()) {
        isNegated |= match(user, m_Not(m_Specific(&extension)));
        isMask |= match(user, m_c_And(m_Specific(&extension), m_Value()));
    }
    return isNegated && isMask;
}

void fixComparisonLanes(Function& function) {
    for (Instruction& instruction : make_early_inc_range(instructions(function))) {
        auto* extension = dyn_cast<SExtInst>(&instruction);
        if (!extension || !extension->getSrcTy()->isVectorTy() ||
            !extension->getSrcTy()->isIntOrIntVectorTy(1))
            continue;
        if (isMaskOfSelection(*extension)) {
            cast<ICmpInst>(extension->getOperand(0))->setPredicate(CmpInst::ICMP_NE);
            continue;
        }
        IRBuilder<> builder(extension);
        Value* lanes = builder.CreateZExt(extension->getOperand(0), extension->getType());
        extension->replaceAllUsesWith(lanes);
        extension->eraseFromParent();
    }
}

} // namespace tarnwick::msl
