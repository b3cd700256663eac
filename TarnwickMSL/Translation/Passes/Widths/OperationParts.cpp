#include "TarnwickMSL/Translation/Passes/Widths/OperationParts.h"

#include "TarnwickMSL/Translation/Passes/Widths/Halves.h"
#include "TarnwickMSL/Translation/Passes/Widths/SmallIntegers.h"

namespace tarnwick::msl {

using namespace llvm;

static Pair pairOperation(Instruction::BinaryOps opcode, Pair a, Pair b, FoldingBuilder& builder) {
    Pairs pairs(builder);
    switch (opcode) {
    case Instruction::Add:
        return pairs.add(a, b);
    case Instruction::Sub:
        return pairs.subtract(a, b);
    case Instruction::Mul:
        return pairs.multiply(a, b);
    case Instruction::UDiv:
        return pairs.divide(a, b, Sign::unsigned_).quotient;
    case Instruction::URem:
        return pairs.divide(a, b, Sign::unsigned_).remainder;
    case Instruction::SDiv:
        return pairs.divide(a, b, Sign::signed_).quotient;
    case Instruction::SRem:
        return pairs.divide(a, b, Sign::signed_).remainder;
    case Instruction::Shl:
        return pairs.shiftLeft(a, b.low);
    case Instruction::LShr:
        return pairs.shiftRight(a, b.low, Sign::unsigned_);
    case Instruction::AShr:
        return pairs.shiftRight(a, b.low, Sign::signed_);
    default: // and, or, xor
        return {builder.CreateBinOp(opcode, a.low, b.low),
                builder.CreateBinOp(opcode, a.high, b.high)};
    }
}

static Parts binary(BinaryOperator& operation, const PartMap& parts, FoldingBuilder& builder) {
    Value *a = operation.getOperand(0), *b = operation.getOperand(1);
    const auto opcode = operation.getOpcode();
    switch (parts.standOf(a)) {
    case Stand::word:
        return {SmallIntegers(builder, a->getType()->getScalarSizeInBits())
                    .operation(opcode, parts.one(a, builder), parts.one(b, builder))};
    case Stand::pair: {
        const Pair made =
            pairOperation(opcode, parts.pair(a, builder), parts.pair(b, builder), builder);
        return {made.low, made.high};
    }
    default:
        return {Halves(builder).rounded(
            builder.CreateBinOp(opcode, parts.one(a, builder), parts.one(b, builder)))};
    }
}

static Value* comparison(CmpInst& compare, const PartMap& parts, FoldingBuilder& builder) {
    Value *a = compare.getOperand(0), *b = compare.getOperand(1);
    const CmpInst::Predicate predicate = compare.getPredicate();
    switch (parts.standOf(a)) {
    case Stand::word:
        return SmallIntegers(builder, a->getType()->getScalarSizeInBits())
            .compare(predicate, parts.one(a, builder), parts.one(b, builder));
    case Stand::pair:
        return Pairs(builder).compare(predicate, parts.pair(a, builder), parts.pair(b, builder));
    default:
        return builder.CreateFCmp(predicate, parts.one(a, builder), parts.one(b, builder));
    }
}

std::optional<Parts> loweredOperation(Instruction& instruction, const PartMap& parts,
                                      FoldingBuilder& builder) {
    if (auto* operation = dyn_cast<BinaryOperator>(&instruction))
        return binary(*operation, parts, builder);
    if (auto* compare = dyn_cast<CmpInst>(&instruction))
        return Parts{comparison(*compare, parts, builder)};
    if (instruction.getOpcode() == Instruction::FNeg)
        return Parts{builder.CreateFNeg(parts.one(instruction.getOperand(0), builder))};
    return std::nullopt;
}

} // namespace tarnwick::msl
