#include "TarnwickMSL/Translation/Spirv/Integers.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

// A call's operands, and short forms of the operations that lower it.
class Integers {
  public:
    Integers(Body& body, const IntrinsicInst& call)
        : body_(body), call_(call), type_(call.getType()) {
        if (call.arg_size() && call.getArgOperand(0)->getType()->isIntOrIntVectorTy())
            type_ = call.getArgOperand(0)->getType();
        bits_ = type_->getScalarSizeInBits();
        boolean_ = shapedLike(type_, body.i1());
    }
    Id write();

  private:
    Id operand(unsigned n) { return body_.id(call_.getArgOperand(n)); }
    Id op(spv::Op op, Id a, Id b) { return body_.emit(op, type_, {a, b}); }
    Id test(spv::Op op, Id a, Id b) { return body_.emit(op, boolean_, {a, b}); }
    Id number(const APInt& value) { return body_.constants.of(ConstantInt::get(type_, value)); }
    Id number(std::uint64_t value) { return number(APInt(bits_, value)); }
    Type* words() { return shapedLike(type_, body_.i32()); }

    Id wordOfLane(Id value, bool high);
    Id population(Id value);
    Id leadingZeros(Id value);
    Id trailingZeros(Id value);
    Id reversed(Id value);
    Id swappedBytes(Id value);
    Id funnel(bool toLeft);
    Id saturatedUnsigned(bool isAddition);
    Id saturatedSigned(bool isAddition);
    Id signedOverflow(Id a, Id b, Id result, bool isAddition);

    Body& body_;
    const IntrinsicInst& call_;
    Type* type_;
    Type* boolean_ = nullptr;
    unsigned bits_ = 0;
};

Id Integers::wordOfLane(Id value, bool high) {
    if (high)
        value = op(spv::Op::OpShiftRightLogical, value, number(32));
    return body_.resized(words(), type_, value, false);
}

Id Integers::population(Id value) {
    if (bits_ <= 32) {
        Id count =
            body_.emit(spv::Op::OpBitCount, words(), {body_.resized(words(), type_, value, false)});
        return body_.resized(type_, words(), count, false);
    }
    Id low = body_.emit(spv::Op::OpBitCount, words(), {wordOfLane(value, false)});
    Id high = body_.emit(spv::Op::OpBitCount, words(), {wordOfLane(value, true)});
    return body_.resized(type_, words(), body_.emit(spv::Op::OpIAdd, words(), {low, high}), false);
}

// FindUMsb gives -1 for zero, so 31 - FindUMsb is 32.
Id Integers::leadingZeros(Id value) {
    Type* word = words();
    auto zeros = [&](Id of, std::uint64_t width) {
        Id top = body_.extended(GLSLstd450FindUMsb, word, {of});
        return body_.emit(spv::Op::OpISub, word, {body_.constants.integer(word, width - 1), top});
    };
    if (bits_ <= 32)
        return body_.resized(type_, word, zeros(body_.resized(word, type_, value, false), bits_),
                             false);
    Id high = wordOfLane(value, true);
    Id isHigh = body_.emit(spv::Op::OpINotEqual, boolean_, {high, body_.constants.null(word)});
    Id count = body_.select(word, isHigh, zeros(high, 32), zeros(wordOfLane(value, false), 64));
    return body_.resized(type_, word, count, false);
}

Id Integers::trailingZeros(Id value) {
    Type* word = words();
    auto lowest = [&](Id of) { return body_.extended(GLSLstd450FindILsb, word, {of}); };
    // FindILsb gives -1 for zero: the greatest unsigned number.
    auto atMost = [&](Id count, std::uint64_t most) {
        return body_.extended(GLSLstd450UMin, word, {count, body_.constants.integer(word, most)});
    };
    if (bits_ <= 32)
        return body_.resized(
            type_, word, atMost(lowest(body_.resized(word, type_, value, false)), bits_), false);
    Id low = wordOfLane(value, false);
    Id isLow = body_.emit(spv::Op::OpINotEqual, boolean_, {low, body_.constants.null(word)});
    Id high = body_.emit(
        spv::Op::OpIAdd, word,
        {atMost(lowest(wordOfLane(value, true)), 32), body_.constants.integer(word, 32)});
    return body_.resized(type_, word, body_.select(word, isLow, lowest(low), high), false);
}

Id Integers::reversed(Id value) {
    Type* word = words();
    auto inWord = [&](Id of) { return body_.emit(spv::Op::OpBitReverse, word, {of}); };
    if (bits_ > 32) {
        Id low = body_.resized(type_, word, inWord(wordOfLane(value, true)), false);
        Id high = body_.resized(type_, word, inWord(wordOfLane(value, false)), false);
        return op(spv::Op::OpBitwiseOr, low, op(spv::Op::OpShiftLeftLogical, high, number(32)));
    }
    Id all = inWord(body_.resized(word, type_, value, false));
    if (bits_ < 32)
        all = body_.emit(spv::Op::OpShiftRightLogical, word,
                         {all, body_.constants.integer(word, 32 - bits_)});
    return body_.resized(type_, word, all, false);
}

Id Integers::swappedBytes(Id value) {
    Id result = 0;
    for (unsigned from = 0; from < bits_; from += 8) {
        unsigned to = bits_ - 8 - from;
        Id byte =
            op(spv::Op::OpBitwiseAnd, value, number(APInt::getBitsSet(bits_, from, from + 8)));
        if (to > from)
            byte = op(spv::Op::OpShiftLeftLogical, byte, number(to - from));
        else if (to < from)
            byte = op(spv::Op::OpShiftRightLogical, byte, number(from - to));
        result = result ? op(spv::Op::OpBitwiseOr, result, byte) : byte;
    }
    return result;
}

// The far side moves by one first, so that a distance of zero never shifts by the whole width.
Id Integers::funnel(bool toLeft) {
    Id high = operand(0), low = operand(1);
    Id near = op(spv::Op::OpBitwiseAnd, operand(2), number(bits_ - 1));
    Id far = op(spv::Op::OpISub, number(bits_ - 1), near);
    Id one = number(1);
    Id left = op(spv::Op::OpShiftLeftLogical,
                 toLeft ? high : op(spv::Op::OpShiftLeftLogical, high, one), toLeft ? near : far);
    Id right = op(spv::Op::OpShiftRightLogical,
                  toLeft ? op(spv::Op::OpShiftRightLogical, low, one) : low, toLeft ? far : near);
    return op(spv::Op::OpBitwiseOr, left, right);
}

Id Integers::saturatedUnsigned(bool isAddition) {
    Id a = operand(0), b = operand(1);
    if (isAddition) {
        Id sum = op(spv::Op::OpIAdd, a, b);
        return body_.select(type_, test(spv::Op::OpULessThan, sum, a),
                            number(APInt::getMaxValue(bits_)), sum);
    }
    return body_.select(type_, test(spv::Op::OpULessThan, a, b), number(0),
                        op(spv::Op::OpISub, a, b));
}

// Addition overflows if both operands have another sign than the result. Subtraction overflows if
// the operands' signs differ and the result's differs from the first's.
Id Integers::signedOverflow(Id a, Id b, Id result, bool isAddition) {
    Id first = op(spv::Op::OpBitwiseXor, a, result);
    Id second = op(spv::Op::OpBitwiseXor, isAddition ? b : a, isAddition ? result : b);
    return test(spv::Op::OpSLessThan, op(spv::Op::OpBitwiseAnd, first, second), number(0));
}

Id Integers::saturatedSigned(bool isAddition) {
    Id a = operand(0), b = operand(1);
    Id result = op(isAddition ? spv::Op::OpIAdd : spv::Op::OpISub, a, b);
    Id end = body_.select(type_, test(spv::Op::OpSLessThan, a, number(0)),
                          number(APInt::getSignedMinValue(bits_)),
                          number(APInt::getSignedMaxValue(bits_)));
    return body_.select(type_, signedOverflow(a, b, result, isAddition), end, result);
}

Id Integers::write() {
    switch (call_.getIntrinsicID()) {
    case Intrinsic::abs:
        return body_.extended(GLSLstd450SAbs, type_, {operand(0)});
    case Intrinsic::ctpop:
        return population(operand(0));
    case Intrinsic::ctlz:
        return leadingZeros(operand(0));
    case Intrinsic::cttz:
        return trailingZeros(operand(0));
    case Intrinsic::bitreverse:
        return reversed(operand(0));
    case Intrinsic::bswap:
        return swappedBytes(operand(0));
    case Intrinsic::fshl:
        return funnel(true);
    case Intrinsic::fshr:
        return funnel(false);
    case Intrinsic::uadd_sat:
        return saturatedUnsigned(true);
    case Intrinsic::usub_sat:
        return saturatedUnsigned(false);
    case Intrinsic::sadd_sat:
        return saturatedSigned(true);
    case Intrinsic::ssub_sat:
        return saturatedSigned(false);
    case Intrinsic::is_constant:
        return body_.constants.null(call_.getType());
    default:
        return 0;
    }
}

Id writeIntegerIntrinsic(Body& body, const IntrinsicInst& call) {
    return Integers(body, call).write();
}

} // namespace tarnwick::msl::spirv
