#include "TarnwickMSL/Translation/Passes/Memory/ByteSteps.h"

#include "TarnwickMSL/Translation/Passes/Memory/MixedMembers.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>
#include <llvm/IR/PatternMatch.h>

#include <numeric>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

static unsigned knownZeros(const Value* value, const IRBuilder<>& builder) {
    return computeKnownBits(value, builder.GetInsertBlock()->getDataLayout())
        .countMinTrailingZeros();
}

std::optional<Counter> counterOf(const Value* value) {
    auto* phi = dyn_cast<PHINode>(value);
    BinaryOperator* sum = nullptr;
    Value *first = nullptr, *step = nullptr;
    if (!phi || !matchSimpleRecurrence(phi, sum, first, step) ||
        sum->getOpcode() != Instruction::Add)
        return std::nullopt;
    auto *start = dyn_cast<ConstantInt>(first), *each = dyn_cast<ConstantInt>(step);
    if (!start || !each || each->getSExtValue() <= 0)
        return std::nullopt;
    return Counter{.first = start->getSExtValue(), .step = each->getSExtValue()};
}

static Value* countedSteps(Value* value, const Counter& counter, IRBuilder<>& builder) {
    Constant* first = ConstantInt::getSigned(value->getType(), counter.first);
    Constant* step = ConstantInt::getSigned(value->getType(), counter.step);
    Value* rounds = builder.CreateUDiv(builder.CreateSub(value, first), step);
    return builder.CreateAdd(builder.CreateMul(rounds, step), first);
}

static Value* asProduct(Value* bytes, IRBuilder<>& builder) {
    Value *left = nullptr, *right = nullptr;
    const APInt* number = nullptr;
    if (const auto counter = counterOf(bytes); counter && counter->step > 1)
        return countedSteps(bytes, *counter, builder);
    if (match(bytes, m_AddLike(m_Value(left), m_Value(right)))) {
        Value *first = asProduct(left, builder), *second = asProduct(right, builder);
        return first == left && second == right ? bytes : builder.CreateAdd(first, second);
    }
    if (match(bytes, m_Mul(m_Value(left), m_APInt(number)))) {
        const unsigned zeros = knownZeros(left, builder);
        return zeros == 0 ? bytes
                          : builder.CreateMul(builder.CreateAShr(left, zeros),
                                              ConstantInt::get(bytes->getType(), *number << zeros));
    }
    const bool isBits = match(bytes, m_BitwiseLogic(m_Value(), m_APInt(number)));
    const bool isShifted = match(bytes, m_Shl(m_Value(left), m_APInt(number)));
    if (!isBits && !(isShifted && knownZeros(left, builder) != 0))
        return bytes;
    const unsigned zeros = knownZeros(bytes, builder);
    return zeros == 0 ? bytes : builder.CreateShl(builder.CreateAShr(bytes, zeros), zeros);
}

void showProducts(GetElementPtrInst& step) {
    IRBuilder<> builder(&step);
    if (step.getSourceElementType()->isIntegerTy(8) && isa<Instruction>(step.getOperand(1)))
        step.setOperand(1, asProduct(step.getOperand(1), builder));
}

// Returns the constants that a phi or select of constants may be, or an empty list for another
// value.
static SmallVector<std::int64_t, 4> choicesOf(Value* value) {
    SmallVector<std::int64_t, 4> choices;
    SmallSetVector<Value*, 8> open;
    open.insert(value);
    for (std::size_t i = 0; i < open.size(); ++i) {
        if (auto* number = dyn_cast<ConstantInt>(open[i]))
            choices.push_back(number->getSExtValue());
        else if (auto* phi = dyn_cast<PHINode>(open[i]))
            open.insert(phi->value_op_begin(), phi->value_op_end());
        else if (auto* select = dyn_cast<SelectInst>(open[i]))
            open.insert(select->op_begin() + 1, select->op_end());
        else
            return {};
    }
    return choices;
}

// Writes a choice of 11 or 17 as `(choice - 11) / 6 * 6` after a step of 11, which shows the member
// that the elements are in. LLVM would fold a sum.
void showChoice(GetElementPtrInst& step) {
    IRBuilder<> builder(&step);
    Value* choice = step.getOperand(1);
    const SmallVector<std::int64_t, 4> choices = choicesOf(choice);
    if (choices.size() < 2)
        return;
    const std::int64_t least = *llvm::min_element(choices);
    std::int64_t size = 0;
    for (std::int64_t one : choices)
        size = std::gcd(size, one - least);
    Type* type = choice->getType();
    if (least != 0) {
        Constant* first = ConstantInt::getSigned(type, least);
        step.setOperand(
            0, builder.CreateGEP(step.getSourceElementType(), step.getPointerOperand(), first));
        choice = builder.CreateSub(choice, first);
    }
    if (size > 1)
        choice = builder.CreateMul(builder.CreateUDiv(choice, ConstantInt::get(type, size)),
                                   ConstantInt::get(type, size));
    step.setOperand(1, choice);
}

std::optional<ChosenStep> chosenStep(GetElementPtrInst& step, Value* index) {
    ChosenStep found{.indices = choicesOf(index)};
    if (found.indices.size() < 2)
        return std::nullopt;
    llvm::sort(found.indices);
    found.indices.erase(llvm::unique(found.indices), found.indices.end());
    const DataLayout& layout = step.getModule()->getDataLayout();
    APInt offset(32, 0);
    MapVector<Value*, APInt> scales;
    Value* from = &step;
    while (auto* each = dyn_cast<GEPOperator>(from)) {
        if (!each->collectOffset(layout, 32, scales, offset))
            return std::nullopt;
        from = each->getPointerOperand();
    }
    found.offset = offset.getSExtValue();
    for (const auto& [each, scale] : scales) {
        if (each == index)
            found.scale = scale.getSExtValue();
        else
            found.others = std::gcd(found.others, scale.getSExtValue());
    }
    return found;
}

bool countsElements(const ChosenStep& chosen, const AllocaInst& local, const DataLayout& layout) {
    std::int64_t apart = 0;
    SmallVector<std::int64_t, 4> offsets;
    for (std::int64_t index : chosen.indices) {
        apart = std::gcd(apart, (index - chosen.indices.front()) * chosen.scale);
        offsets.push_back(chosen.offset + index * chosen.scale);
    }
    return chosen.scale > 0 && areOfOneArray(local.getAllocatedType(), offsets, apart, 0, layout);
}

} // namespace tarnwick::msl
