// LLVM 15 joins `(a & ~mask) | (b & mask)` with a constant mask into one instruction of AVX-512
// (vpternlogd, vpternlogq). If a condition then selects between the result and a or b, it makes
// that instruction a masked one, whose table does not fit the order of its operands: it takes the
// bits of the wrong values. Each lane of 32 or 64 bits is affected, in every order of operands, and
// all ways to write the choice with and, or, xor and add, which LLVM turns into this one. A
// difference stays one.
//
// Masks may become constants in the driver: in loops that it unrolls, and by function constants. So
// `(a & ~mask) | b` is one as well, in which b turns out to have no bits beside the mask, and so is
// `((a ^ b) & mask) ^ a`.
//
// In: any code. Out: a choice of bits is a difference if its result, or a vector with it, is an arm
// of a selection or an operand of a phi that has a value of a or b as another operand. The driver
// keeps phis that are operands of each other in one register. So the uses of a phi are those of the
// choice, and a loop's own phi is a value that it is selected against.
#include "TarnwickMSL/Translation/Passes/Values/BitChoices.h"

#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/PatternMatch.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

namespace {

struct BitChoice {
    Value* clear; // the bits where the mask is clear
    Value* set;
    Value* mask;
    bool mayHaveMore = false; // bits of `set` beside the mask, to be joined in the same way
};

using Values = SmallPtrSet<const Value*, 16>;

} // namespace

static bool areOpposite(Value* mask, Value* other) {
    if (match(other, m_Not(m_Specific(mask))) || match(mask, m_Not(m_Specific(other))))
        return true;
    auto* constant = dyn_cast<Constant>(mask);
    return constant && isa<Constant>(other) && ConstantExpr::getNot(constant) == other;
}

static bool isWord(const Value& value) {
    const unsigned bits = value.getType()->getScalarSizeInBits();
    return bits == 32 || bits == 64;
}

static bool joinsBits(const Instruction& instruction) {
    return is_contained({Instruction::Or, Instruction::Xor, Instruction::Add},
                        instruction.getOpcode());
}

static std::optional<BitChoice> choiceOf(Instruction& instruction) {
    if (!isWord(instruction))
        return std::nullopt;
    Value *a = nullptr, *b = nullptr, *first = nullptr, *second = nullptr;
    if (match(&instruction, m_Intrinsic<Intrinsic::copysign>(m_Value(a), m_Value(b))))
        return BitChoice{.clear = a, .set = b, .mask = nullptr};
    if (!joinsBits(instruction) ||
        !match(instruction.getOperand(0), m_And(m_Value(a), m_Value(first))) ||
        !match(instruction.getOperand(1), m_And(m_Value(b), m_Value(second))))
        return std::nullopt;
    for ([[maybe_unused]] bool swapsSecond : {false, true}) {
        for ([[maybe_unused]] bool swapsFirst : {false, true}) {
            if (areOpposite(first, second) && !isa<Constant>(a) && !isa<Constant>(b))
                return BitChoice{.clear = a, .set = b, .mask = second};
            std::swap(a, first);
        }
        std::swap(b, second);
    }
    return std::nullopt;
}

// A choice that the driver may find when it knows the mask.
static std::optional<BitChoice> laterChoiceOf(Instruction& instruction) {
    if (!joinsBits(instruction) || !isWord(instruction))
        return std::nullopt;
    Value *a = nullptr, *b = nullptr, *mask = nullptr;
    for (unsigned side : {0u, 1u}) {
        Value *masked = instruction.getOperand(side), *other = instruction.getOperand(1 - side);
        if (isa<Constant>(other))
            continue;
        if (match(masked, m_c_And(m_Value(a), m_Not(m_Value(mask)))) && !isa<Constant>(mask))
            return BitChoice{.clear = a, .set = other, .mask = mask, .mayHaveMore = true};
        if (instruction.getOpcode() == Instruction::Xor &&
            match(masked, m_c_And(m_c_Xor(m_Value(b), m_Specific(other)), m_Value(mask))) &&
            !isa<Constant>(mask))
            return BitChoice{.clear = other, .set = b, .mask = mask};
    }
    return std::nullopt;
}

// Whether the function may return its operand: the driver removes the absolute value of a number
// that it knows to be positive, the rounding of a whole one and the limit of one in a range.
static bool mayReturnOperand(const Value* value) {
    static constexpr Intrinsic::ID functions[] = {
        Intrinsic::fabs,      Intrinsic::floor, Intrinsic::ceil,   Intrinsic::trunc,
        Intrinsic::rint,      Intrinsic::round, Intrinsic::minnum, Intrinsic::maxnum,
        Intrinsic::roundeven, Intrinsic::abs,   Intrinsic::smin,   Intrinsic::smax,
        Intrinsic::umin,      Intrinsic::umax};
    auto* call = dyn_cast<IntrinsicInst>(value);
    return call && is_contained(functions, call->getIntrinsicID());
}

// Whether the value has lanes or bits of its operands, unchanged.
static bool isMove(const Value* value) {
    return isa<BitCastInst, InsertElementInst, ExtractElementInst, ShuffleVectorInst>(value) ||
           mayReturnOperand(value);
}

// The values that it may be, and those that its bits come from unchanged. LLVM replaces an arm of a
// selection by one of an earlier selection with the same condition.
static void addSources(const Value* value, Values& sources) {
    if (isa<Constant>(value) || !sources.insert(value).second)
        return;
    if (const auto* selection = dyn_cast<SelectInst>(value)) {
        addSources(selection->getTrueValue(), sources);
        addSources(selection->getFalseValue(), sources);
    } else if (isMove(value) || isa<PHINode>(value)) {
        for (const Value* operand : cast<Instruction>(value)->operands())
            addSources(operand, sources);
    }
}

static bool sharesSources(const Value* value, const Values& with) {
    Values sources;
    addSources(value, sources);
    return any_of(sources, [&](const Value* source) { return with.contains(source); });
}

static bool isSelectedAgainst(const Value& result, const Values& sources, Values& seen) {
    for (const User* user : result.users()) {
        if (!seen.insert(user).second)
            continue;
        const bool isChoice = isa<PHINode, SelectInst>(user);
        if ((isa<PHINode>(user) && sharesSources(user, sources)) ||
            (isChoice && any_of(user->operands(), [&](const Value* other) {
                 return other != &result && sharesSources(other, sources);
             })))
            return true;
        if ((isChoice || isMove(user)) && isSelectedAgainst(*user, sources, seen))
            return true;
    }
    return false;
}

static Value* asDifference(Instruction& instruction, const BitChoice& choice) {
    IRBuilder<> builder(&instruction);
    Type* type = instruction.getType();
    Type* bits = type->getWithNewType(builder.getIntNTy(type->getScalarSizeInBits()));
    Value* mask = choice.mask
                      ? choice.mask
                      : ConstantInt::get(bits, APInt::getSignMask(bits->getScalarSizeInBits()));
    Value* clear = builder.CreateBitCast(choice.clear, bits);
    Value* set = builder.CreateBitCast(choice.set, bits);
    Value* difference = builder.CreateSub(builder.CreateOr(clear, mask),
                                          builder.CreateAnd(builder.CreateNot(set), mask));
    if (choice.mayHaveMore)
        difference = builder.CreateBinOp(cast<BinaryOperator>(instruction).getOpcode(), difference,
                                         builder.CreateAnd(set, builder.CreateNot(mask)));
    return builder.CreateBitCast(difference, type);
}

void rewriteBitChoices(Function& main) {
    for (Instruction& instruction : make_early_inc_range(instructions(main))) {
        auto choice = choiceOf(instruction);
        if (!choice)
            choice = laterChoiceOf(instruction);
        if (!choice)
            continue;
        Values sources, seen;
        addSources(choice->clear, sources);
        addSources(choice->set, sources);
        if (!isSelectedAgainst(instruction, sources, seen))
            continue;
        instruction.replaceAllUsesWith(asDifference(instruction, *choice));
        instruction.eraseFromParent();
    }
}

} // namespace tarnwick::msl
