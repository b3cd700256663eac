#include "TarnwickMSL/Translation/Passes/Widths/SmallIntegers.h"

#include <llvm/Analysis/ValueTracking.h>

namespace tarnwick::msl {

using namespace llvm;

Value* SmallIntegers::extended(Value* word, Sign sign) {
    const DataLayout& layout = builder_.GetInsertBlock()->getDataLayout();
    if (sign == Sign::unsigned_)
        return MaskedValueIsZero(word, APInt::getHighBitsSet(32, 32 - bits_), layout)
                   ? word
                   : builder_.CreateAnd(word, maskTrailingOnes<std::uint64_t>(bits_));
    if (ComputeNumSignBits(word, layout) > 32 - bits_)
        return word;
    return builder_.CreateAShr(builder_.CreateShl(word, 32 - bits_), 32 - bits_);
}

Value* SmallIntegers::operation(Instruction::BinaryOps opcode, Value* a, Value* b) {
    switch (opcode) {
    case Instruction::Shl:
        return builder_.CreateShl(a, extended(b, Sign::unsigned_));
    case Instruction::AShr:
        return builder_.CreateAShr(extended(a, Sign::signed_), extended(b, Sign::unsigned_));
    case Instruction::LShr:
    case Instruction::UDiv:
    case Instruction::URem:
        return builder_.CreateBinOp(opcode, extended(a, Sign::unsigned_),
                                    extended(b, Sign::unsigned_));
    case Instruction::SDiv:
    case Instruction::SRem:
        return builder_.CreateBinOp(opcode, extended(a, Sign::signed_), extended(b, Sign::signed_));
    default: // sums, products and logic, whose low bits depend on low bits only
        return builder_.CreateBinOp(opcode, a, b);
    }
}

Value* SmallIntegers::compare(CmpInst::Predicate predicate, Value* a, Value* b) {
    const Sign sign = CmpInst::isSigned(predicate) ? Sign::signed_ : Sign::unsigned_;
    return builder_.CreateICmp(predicate, extended(a, sign), extended(b, sign));
}

Value* SmallIntegers::clamped(Value* word) {
    Value* most = number(word, maskTrailingOnes<std::uint64_t>(bits_ - 1));
    Value* least = builder_.CreateNot(most);
    word = builder_.CreateBinaryIntrinsic(Intrinsic::smin, word, most);
    return builder_.CreateBinaryIntrinsic(Intrinsic::smax, word, least);
}

// Both operands beside each other, moved as one number of twice the bits.
Value* SmallIntegers::funnel(bool isLeft, ArrayRef<Value*> operands) {
    Value* both = builder_.CreateOr(builder_.CreateShl(operands[0], bits_),
                                    extended(operands[1], Sign::unsigned_));
    Value* distance = builder_.CreateAnd(operands[2], bits_ - 1);
    return isLeft ? builder_.CreateLShr(builder_.CreateShl(both, distance), bits_)
                  : builder_.CreateLShr(both, distance);
}

Value* SmallIntegers::bitFunction(Intrinsic::ID id, Value* word) {
    Type* type = word->getType();
    switch (id) {
    case Intrinsic::ctpop:
        return builder_.CreateUnaryIntrinsic(id, extended(word, Sign::unsigned_));
    case Intrinsic::ctlz:
        return builder_.CreateSub(
            builder_.CreateIntrinsic(type, id,
                                     {extended(word, Sign::unsigned_), builder_.getFalse()}),
            number(word, 32 - bits_));
    case Intrinsic::cttz:
        return builder_.CreateIntrinsic(
            type, id,
            {builder_.CreateOr(word, number(word, std::uint64_t{1} << bits_)),
             builder_.getFalse()});
    case Intrinsic::bitreverse:
    case Intrinsic::bswap:
        return builder_.CreateLShr(builder_.CreateUnaryIntrinsic(id, word), 32 - bits_);
    default:
        return builder_.CreateIntrinsic(type, Intrinsic::abs,
                                        {extended(word, Sign::signed_), builder_.getFalse()});
    }
}

Value* SmallIntegers::function(Intrinsic::ID id, ArrayRef<Value*> operands) {
    const auto both = [&](Sign sign, auto make) {
        return make(extended(operands[0], sign), extended(operands[1], sign));
    };
    const auto same = [&](Value* a, Value* b) { return builder_.CreateBinaryIntrinsic(id, a, b); };
    switch (id) {
    case Intrinsic::ctpop:
    case Intrinsic::ctlz:
    case Intrinsic::cttz:
    case Intrinsic::bitreverse:
    case Intrinsic::bswap:
    case Intrinsic::abs:
        return bitFunction(id, operands[0]);
    case Intrinsic::umin:
    case Intrinsic::umax:
    case Intrinsic::usub_sat:
        return both(Sign::unsigned_, same);
    case Intrinsic::smin:
    case Intrinsic::smax:
        return both(Sign::signed_, same);
    case Intrinsic::uadd_sat:
        return both(Sign::unsigned_, [&](Value* a, Value* b) {
            Value* most = number(a, maskTrailingOnes<std::uint64_t>(bits_));
            return builder_.CreateBinaryIntrinsic(Intrinsic::umin, builder_.CreateAdd(a, b), most);
        });
    case Intrinsic::sadd_sat:
        return both(Sign::signed_,
                    [&](Value* a, Value* b) { return clamped(builder_.CreateAdd(a, b)); });
    case Intrinsic::ssub_sat:
        return both(Sign::signed_,
                    [&](Value* a, Value* b) { return clamped(builder_.CreateSub(a, b)); });
    case Intrinsic::fshl:
    case Intrinsic::fshr:
        return funnel(id == Intrinsic::fshl, operands);
    default:
        return nullptr;
    }
}

} // namespace tarnwick::msl
