#include "TarnwickMSL/Translation/Reading/Ranges.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/Instructions.h>

namespace tarnwick::msl::reading {

using namespace llvm;

static constexpr unsigned mostDepth = 5; // of operands, each with one or two of its own

static ConstantRange rangeOf(const Value& value, const DataLayout& layout, unsigned depth);

// Of the operation alone; full if it is of another kind.
static ConstantRange rangeOfResult(const Value& value, const DataLayout& layout, unsigned depth) {
    const unsigned width = value.getType()->getIntegerBitWidth();
    const auto operand = [&](const Value* given) { return rangeOf(*given, layout, depth + 1); };
    if (auto* choice = dyn_cast<SelectInst>(&value))
        return operand(choice->getTrueValue()).unionWith(operand(choice->getFalseValue()));
    if (auto* sum = dyn_cast<BinaryOperator>(&value))
        return operand(sum->getOperand(0)).binaryOp(sum->getOpcode(), operand(sum->getOperand(1)));
    auto* conversion = dyn_cast<CastInst>(&value);
    if (conversion && conversion->isIntegerCast())
        return operand(conversion->getOperand(0)).castOp(conversion->getOpcode(), width);
    auto* phi = dyn_cast<PHINode>(&value);
    if (!phi || phi->getNumIncomingValues() != 2)
        return ConstantRange::getFull(width);
    return operand(phi->getIncomingValue(0)).unionWith(operand(phi->getIncomingValue(1)));
}

static ConstantRange rangeOf(const Value& value, const DataLayout& layout, unsigned depth) {
    if (auto* number = dyn_cast<ConstantInt>(&value))
        return {number->getValue()};
    const KnownBits bits = computeKnownBits(&value, layout);
    const ConstantRange known = ConstantRange::fromKnownBits(bits, true);
    return depth == mostDepth
               ? known
               : known.intersectWith(rangeOfResult(value, layout, depth), ConstantRange::Signed);
}

ConstantRange rangeOf(const Value& value, const DataLayout& layout) {
    return rangeOf(value, layout, 0);
}

} // namespace tarnwick::msl::reading
