// The clamp of `fract` goes where the fraction cannot reach one.
//
// In: the library's fract(x), which is smin(bits(x - floor(x)), bits(1 - 2^-24)) as integers. The
// difference is 1.0 for x in [-2^-25, 0) alone, where x + 1 rounds up; a fraction must be below one
// (Metal Shading Language 3.1, 6.5). Noise functions call fract several times for each pixel.
//
// Out: x - floor(x) alone where x is known not to be in that interval.
//
// What can be known of a value that is not a NaN (class Facts):
// - non-negative: constants, squares, absolute values, roots, fractions, conversions of unsigned
//   integers, and sums and products of such values;
// - whole (an integer as a float): results of floor, ceil, trunc, rint, conversions of integers,
//   and sums, differences and products of such values. Where a sum rounds, the result is beyond
//   2^24, and every float there is whole.
// x is safe if it is non-negative or whole, or a whole number times a constant of at least 2^-20 in
// absolute value: then it is zero or at least 2^-20 from zero. Hashes have this form
// (floor(p) * 0.1031).
//
// Invariant: a fact of a vector holds for each defined lane. Rearrangements (shuffle, insertion,
// extraction) pass facts on from all their sources. The facts exclude NaNs: with the clamp a
// positive NaN becomes the largest fraction, without it the result is a NaN.
//
// The walk goes `deepest` operations up and remembers its answers. It does not look through phis:
// a value that a loop carries could be safe only by induction.
#include "TarnwickMSL/Translation/Passes/Values/Fractions.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Transforms/Utils/Local.h>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

constexpr unsigned deepest = 24; // operations looked through
constexpr double leastFactor = 1.0 / (1 << 20);

namespace {

// What is true of every lane of a value that is not a NaN. Undefined lanes are not looked at.
class Facts {
  public:
    bool isNonNegative(Value* value, unsigned depth = 0);
    bool isWhole(Value* value, unsigned depth = 0);
    bool isNeverJustBelowZero(Value* value);

  private:
    bool findNonNegative(Value* value, unsigned depth);
    bool findWhole(Value* value, unsigned depth);

    DenseMap<Value*, bool> nonNegative_, whole_;
};

} // namespace

template <typename Test> static bool holdsForConstant(const Constant* constant, Test test) {
    if (auto* number = dyn_cast<ConstantFP>(constant))
        return test(number->getValueAPF());
    auto* vector = dyn_cast<FixedVectorType>(constant->getType());
    for (unsigned i = 0; vector && i < vector->getNumElements(); i++) {
        Constant* lane = constant->getAggregateElement(i);
        auto* number = dyn_cast_or_null<ConstantFP>(lane);
        if (!(number && test(number->getValueAPF())) && !isa_and_nonnull<UndefValue>(lane))
            return false;
    }
    return vector != nullptr;
}

// The values that a value's lanes are taken from; none where it is no mere rearrangement.
static SmallVector<Value*, 2> sources(Value* value) {
    if (auto* extraction = dyn_cast<ExtractElementInst>(value))
        return {extraction->getVectorOperand()};
    if (isa<ShuffleVectorInst, InsertElementInst>(value)) {
        SmallVector<Value*, 2> found;
        for (Value* operand : {cast<User>(value)->getOperand(0), cast<User>(value)->getOperand(1)})
            if (!isa<UndefValue>(operand))
                found.push_back(operand);
        return found;
    }
    return {};
}

// Returns the x of `x - floor(x)`, or null.
static Value* wholeOfFraction(Value* value) {
    Value* x = nullptr;
    bool isFraction =
        match(value, m_FSub(m_Value(x), m_Intrinsic<Intrinsic::floor>(m_Deferred(x))));
    return isFraction ? x : nullptr;
}

// Returns the difference of a clamped fraction, or null.
static Value* clampedFraction(Value* value) {
    Value* difference = nullptr;
    bool isClamped =
        match(value,
              m_BitCast(m_SMin(m_BitCast(m_Value(difference)), m_SpecificInt(0x3f7fffff)))) &&
        difference->getType() == value->getType() && value->getType()->getScalarType()->isFloatTy();
    return isClamped && wholeOfFraction(difference) ? difference : nullptr;
}

bool Facts::isNonNegative(Value* value, unsigned depth) {
    if (auto found = nonNegative_.find(value); found != nonNegative_.end())
        return found->second;
    bool is = depth < deepest && findNonNegative(value, depth + 1);
    return nonNegative_[value] = is;
}

bool Facts::findNonNegative(Value* value, unsigned depth) {
    auto is = [&](Value* operand) { return isNonNegative(operand, depth); };
    if (auto* constant = dyn_cast<Constant>(value))
        return holdsForConstant(constant, [](const APFloat& number) {
            return !number.isNegative() || number.isZero();
        });
    if (auto from = sources(value); !from.empty())
        return all_of(from, is);
    if (isa<UIToFPInst>(value) || wholeOfFraction(value) || clampedFraction(value))
        return true;
    Value *a = nullptr, *b = nullptr;
    if (match(value, m_FMul(m_Value(a), m_Deferred(a))))
        return true;
    if (match(value, m_FAdd(m_Value(a), m_Value(b))) ||
        match(value, m_FMul(m_Value(a), m_Value(b))))
        return is(a) && is(b);
    auto* call = dyn_cast<IntrinsicInst>(value);
    return call &&
           (call->getIntrinsicID() == Intrinsic::fabs || call->getIntrinsicID() == Intrinsic::sqrt);
}

bool Facts::isWhole(Value* value, unsigned depth) {
    if (auto found = whole_.find(value); found != whole_.end())
        return found->second;
    bool is = depth < deepest && findWhole(value, depth + 1);
    return whole_[value] = is;
}

// Sums and products of whole numbers are whole: where they round, every float is.
bool Facts::findWhole(Value* value, unsigned depth) {
    auto is = [&](Value* operand) { return isWhole(operand, depth); };
    if (auto* constant = dyn_cast<Constant>(value))
        return holdsForConstant(constant, [](const APFloat& number) { return number.isInteger(); });
    if (auto from = sources(value); !from.empty())
        return all_of(from, is);
    Value *a = nullptr, *b = nullptr;
    if (match(value, m_FAdd(m_Value(a), m_Value(b))) ||
        match(value, m_FSub(m_Value(a), m_Value(b))) ||
        match(value, m_FMul(m_Value(a), m_Value(b))))
        return is(a) && is(b);
    if (auto* call = dyn_cast<IntrinsicInst>(value))
        switch (call->getIntrinsicID()) {
        case Intrinsic::floor:
        case Intrinsic::ceil:
        case Intrinsic::trunc:
        case Intrinsic::rint:
        case Intrinsic::roundeven:
            return true;
        default:
            return false;
        }
    return isa<UIToFPInst, SIToFPInst>(value);
}

bool Facts::isNeverJustBelowZero(Value* value) {
    if (isNonNegative(value) || isWhole(value))
        return true;
    Value* a = nullptr;
    Constant* factor = nullptr;
    return match(value, m_FMul(m_Value(a), m_Constant(factor))) && isWhole(a) &&
           holdsForConstant(factor, [](const APFloat& number) {
               return std::abs(number.convertToDouble()) >= leastFactor;
           });
}

bool trimFractions(Function& function) {
    Facts facts;
    SmallVector<std::pair<Instruction*, Value*>, 16> found;
    for (Instruction& instruction : instructions(function))
        if (Value* difference = clampedFraction(&instruction))
            if (facts.isNeverJustBelowZero(wholeOfFraction(difference)))
                found.emplace_back(&instruction, difference);
    for (auto [clamped, difference] : found) {
        clamped->replaceAllUsesWith(difference);
        RecursivelyDeleteTriviallyDeadInstructions(clamped);
    }
    return !found.empty();
}

} // namespace tarnwick::msl
