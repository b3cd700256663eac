// The packaged CPU driver compares a sign-extended integer of 32 bits with a constant of 64 bits in
// 32 bits. It first tests whether the constant is in the range of 32 bits, and takes 2^31 for the
// least number of that range: `extended < 98` is never true then, and `extended >= 98` always.
//
// LLVM has narrowed most of these comparisons before, but not those of vectors with different
// constants, nor those with values that only the driver finds to be constant. Vectors are taken
// apart in the driver, and selections and phis may vanish there. So an operand is followed through
// them. LLVM, under the driver, turns the unsigned comparison back into a signed one.
//
// In: any code. Out: such a comparison is unsigned.
#include "TarnwickMSL/Translation/Passes/Values/ExtendedComparisons.h"

#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl {

using namespace llvm;

using Values = SmallPtrSet<const Value*, 16>;

static bool mayBeExtended(const Value* value, Values& seen) {
    if (!seen.insert(value).second)
        return false;
    if (const auto* extension = dyn_cast<SExtInst>(value))
        return extension->getSrcTy()->getScalarSizeInBits() == 32;
    if (!isa<InsertElementInst, ExtractElementInst, ShuffleVectorInst, SelectInst, PHINode>(value))
        return false;
    return any_of(cast<Instruction>(value)->operands(),
                  [&](const Value* operand) { return mayBeExtended(operand, seen); });
}

static bool isAffected(const ICmpInst& comparison) {
    if (!comparison.isSigned() || comparison.getOperand(0)->getType()->getScalarSizeInBits() != 64)
        return false;
    Values seen;
    return any_of(comparison.operands(),
                  [&](const Value* operand) { return mayBeExtended(operand, seen); });
}

void rewriteExtendedComparisons(Function& main) {
    for (Instruction& instruction : make_early_inc_range(instructions(main))) {
        auto* comparison = dyn_cast<ICmpInst>(&instruction);
        if (!comparison || !isAffected(*comparison))
            continue;
        IRBuilder<> builder(comparison);
        Value* sign =
            ConstantInt::get(comparison->getOperand(0)->getType(), APInt::getSignMask(64));
        comparison->replaceAllUsesWith(builder.CreateICmp(
            comparison->getUnsignedPredicate(), builder.CreateXor(comparison->getOperand(0), sign),
            builder.CreateXor(comparison->getOperand(1), sign)));
        comparison->eraseFromParent();
    }
}

} // namespace tarnwick::msl
