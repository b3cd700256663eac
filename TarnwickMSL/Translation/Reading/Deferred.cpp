// A matrix times a vector splats each lane and multiplies by it, a vector is gathered by one
// insertion for each lane, and a fraction is a difference from a rounded number. Written one by
// one, most of these instructions would be dead: a product takes the scalar itself
// (OpVectorTimesScalar), an insertion takes all lanes of the insertions before it
// (OpCompositeConstruct), and a fraction is one instruction (Fract). So an instruction is deferred
// if none of its users needs it whole.
//
// Whether a user needs it is decided here alone, by the functions that the writer calls when it
// writes that user: `repeatedScalar`, `factorOf` and `wholeOfFraction`. A user that needs it anyway
// gets the value written at its own place (Body::id): to defer changes the size of the code, never
// its result. A phi cannot get it so, since its operands belong to the ends of other blocks.
#include "TarnwickMSL/Translation/Reading/Deferred.h"

#include <llvm/Analysis/VectorUtils.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/PatternMatch.h>

namespace tarnwick::msl::reading {

using namespace llvm;
using namespace llvm::PatternMatch;

const Value* repeatedScalar(const Value* value) {
    auto* shuffle = dyn_cast<ShuffleVectorInst>(value);
    if (!shuffle)
        return nullptr;
    ArrayRef<int> mask = shuffle->getShuffleMask();
    const int* first = find_if(mask, [](int lane) { return lane >= 0; });
    if (first == mask.end() || any_of(mask, [&](int lane) { return lane >= 0 && lane != *first; }))
        return nullptr;
    // Follows the insertions down to the lane's own, wherever in the chain it is.
    return findScalarElement(const_cast<ShuffleVectorInst*>(shuffle),
                             static_cast<unsigned>(first - mask.begin()));
}

std::optional<Factor> factorOf(const BinaryOperator& product) {
    if (product.getOpcode() != Instruction::FMul || !product.getType()->isVectorTy())
        return std::nullopt;
    const Value* first = product.getOperand(0);
    const Value* second = product.getOperand(1);
    const Value* firstScalar = repeatedScalar(first);
    const Value* secondScalar = repeatedScalar(second);
    if ((firstScalar == nullptr) == (secondScalar == nullptr))
        return std::nullopt;
    return firstScalar ? Factor{.vector = second, .splat = first, .scalar = firstScalar}
                       : Factor{.vector = first, .splat = second, .scalar = secondScalar};
}

// Fract is x - floor(x) (GLSL.std.450), but a device may clamp it below one.
const Value* wholeOfFraction(const BinaryOperator& difference) {
    const Value* whole = nullptr;
    const bool isFraction = match(
        &difference, m_FSub(m_Value(whole), m_Intrinsic<Intrinsic::floor>(m_Deferred(whole))));
    return isFraction && difference.hasAllowContract() ? whole : nullptr;
}

bool isAtKnownLane(const InsertElementInst& insert) {
    return isa<ConstantInt>(insert.getOperand(2));
}

// Whether the user is written without the id of `value`, which is one of its operands.
static bool takesApart(const User& user, const Instruction& value) {
    if (auto* shuffle = dyn_cast<ShuffleVectorInst>(&user))
        return repeatedScalar(shuffle) != nullptr;
    if (auto* operation = dyn_cast<BinaryOperator>(&user)) {
        std::optional<Factor> factor = factorOf(*operation);
        const Value* whole = wholeOfFraction(*operation);
        return (factor && factor->splat == &value) || (whole && whole != &value);
    }
    // A vector from which two others are made is written once, not twice in parts.
    auto* next = dyn_cast<InsertElementInst>(&user);
    return next && isa<InsertElementInst>(value) && value.hasOneUse() && isAtKnownLane(*next);
}

static bool mayBeDeferred(const Instruction& instruction) {
    if (auto* insert = dyn_cast<InsertElementInst>(&instruction))
        return isAtKnownLane(*insert);
    return repeatedScalar(&instruction) != nullptr ||
           match(&instruction, m_Intrinsic<Intrinsic::floor>(m_Value()));
}

bool isDeferred(const Instruction& instruction) {
    return mayBeDeferred(instruction) && all_of(instruction.users(), [&](const User* user) {
               return takesApart(*user, instruction);
           });
}

} // namespace tarnwick::msl::reading
