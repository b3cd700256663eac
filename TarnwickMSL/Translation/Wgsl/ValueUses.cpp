#include "TarnwickMSL/Translation/Wgsl/ValueUses.h"

#include "TarnwickMSL/Translation/Reading/Deferred.h"

#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/IntrinsicInst.h>

namespace tarnwick::msl::wgsl {

using namespace llvm;
using namespace reading;
using llvm::Use;

// An index is taken apart where memory is accessed (Place.h), which may be in another block than
// the sums and products that it consists of.
static bool isInIndex(const Instruction& operation, unsigned depth = 0) {
    return operation.getType()->isIntegerTy() && isa<BinaryOperator>(operation) && depth < 6 &&
           any_of(operation.users(), [&](const User* user) {
               return isa<GetElementPtrInst>(user) ||
                      isInIndex(*cast<Instruction>(user), depth + 1);
           });
}

// Each value once: sums in indices share their parts, and ways through them are too many to follow.
static void addUses(const Value& value, SmallVectorImpl<const Use*>& uses,
                    SmallPtrSetImpl<const Value*>& seen) {
    if (!seen.insert(&value).second)
        return;
    for (const Use& use : value.uses()) {
        auto* user = dyn_cast<Instruction>(use.getUser());
        const bool isThrough = user && (isDeferred(*user) || user->getType()->isPointerTy());
        if (!isThrough)
            uses.push_back(&use);
        if (isThrough || (user && isInIndex(*user)))
            addUses(*user, uses, seen);
    }
}

SmallVector<const Use*, 4> usesIn(const Value& value) {
    SmallVector<const Use*, 4> uses;
    SmallPtrSet<const Value*, 8> seen;
    addUses(value, uses, seen);
    return uses;
}

static bool isSignedUse(const Use& use) {
    const User* user = use.getUser();
    if (auto* compare = dyn_cast<ICmpInst>(user))
        return compare->isSigned();
    if (auto* intrinsic = dyn_cast<IntrinsicInst>(user))
        return intrinsic->getIntrinsicID() == Intrinsic::smin ||
               intrinsic->getIntrinsicID() == Intrinsic::smax;
    const auto* operation = dyn_cast<Instruction>(user);
    const unsigned opcode = operation ? operation->getOpcode() : 0;
    return opcode == Instruction::SIToFP || opcode == Instruction::SDiv ||
           opcode == Instruction::SRem || (opcode == Instruction::AShr && use.getOperandNo() == 0);
}

bool prefersSigned(const Value& value) {
    return value.getType()->isIntOrIntVectorTy(32) && any_of(value.uses(), isSignedUse);
}

} // namespace tarnwick::msl::wgsl
