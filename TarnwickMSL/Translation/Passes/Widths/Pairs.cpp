// Division follows the classical method of two digits (Knuth, The Art of Computer Programming,
// volume 2, 4.3.1, algorithm D), with the digits of 16 bits: a 64-bit number by a 32-bit number
// takes two estimates, each at most two too large. Divisors of more than 32 bits are shortened to
// their upper 32 bits first; the quotient is then at most one too large (Warren, Hacker's Delight,
// 9-5). Both cases share the estimates.
#include "TarnwickMSL/Translation/Passes/Widths/Pairs.h"

namespace tarnwick::msl {

using namespace llvm;

Pair Pairs::extended(Value* word, Sign sign) {
    return {word, sign == Sign::signed_ ? builder_.CreateAShr(word, 31)
                                        : Constant::getNullValue(word->getType())};
}

Pair Pairs::choice(Value* condition, Pair a, Pair b) {
    return {builder_.CreateSelect(condition, a.low, b.low),
            builder_.CreateSelect(condition, a.high, b.high)};
}

Pair Pairs::add(Pair a, Pair b) {
    Value* low = builder_.CreateAdd(a.low, b.low);
    Value* carry = builder_.CreateZExt(builder_.CreateICmpULT(low, a.low), low->getType());
    return {low, builder_.CreateAdd(builder_.CreateAdd(a.high, b.high), carry)};
}

Pair Pairs::subtract(Pair a, Pair b) {
    Value* low = builder_.CreateSub(a.low, b.low);
    Value* borrow = builder_.CreateZExt(builder_.CreateICmpULT(a.low, b.low), low->getType());
    return {low, builder_.CreateSub(builder_.CreateSub(a.high, b.high), borrow)};
}

Pair Pairs::negated(Pair a) {
    Value* zero = Constant::getNullValue(a.low->getType());
    return subtract({zero, zero}, a);
}

Pair Pairs::magnitude(Pair a) {
    return choice(isNegative(a), negated(a), a);
}

// The upper 32 bits of the product of two words, from products of their halves.
Value* Pairs::highProduct(Value* a, Value* b) {
    Value* aLow = builder_.CreateAnd(a, 0xffff);
    Value* aHigh = builder_.CreateLShr(a, 16);
    Value* bLow = builder_.CreateAnd(b, 0xffff);
    Value* bHigh = builder_.CreateLShr(b, 16);
    Value* carried = builder_.CreateLShr(builder_.CreateMul(aLow, bLow), 16);
    Value* first = builder_.CreateAdd(builder_.CreateMul(aHigh, bLow), carried);
    Value* second =
        builder_.CreateAdd(builder_.CreateMul(aLow, bHigh), builder_.CreateAnd(first, 0xffff));
    Value* sum =
        builder_.CreateAdd(builder_.CreateMul(aHigh, bHigh), builder_.CreateLShr(first, 16));
    return builder_.CreateAdd(sum, builder_.CreateLShr(second, 16));
}

Pair Pairs::multiply(Pair a, Pair b) {
    Value* crossed =
        builder_.CreateAdd(builder_.CreateMul(a.low, b.high), builder_.CreateMul(a.high, b.low));
    return {builder_.CreateMul(a.low, b.low),
            builder_.CreateAdd(highProduct(a.low, b.low), crossed)};
}

// The bits that cross from one word to the other move by one first, because a word cannot move by
// 32.
Pair Pairs::shiftLeft(Pair a, Value* distance) {
    Value* near = builder_.CreateAnd(distance, 31);
    Value* isFar = builder_.CreateIsNotNull(builder_.CreateAnd(distance, 32));
    Value* crossing =
        builder_.CreateLShr(builder_.CreateLShr(a.low, 1), builder_.CreateXor(near, 31));
    Value* low = builder_.CreateShl(a.low, near);
    Value* high = builder_.CreateOr(builder_.CreateShl(a.high, near), crossing);
    return choice(isFar, {Constant::getNullValue(low->getType()), low}, {low, high});
}

Pair Pairs::shiftRight(Pair a, Value* distance, Sign sign) {
    Value* near = builder_.CreateAnd(distance, 31);
    Value* isFar = builder_.CreateIsNotNull(builder_.CreateAnd(distance, 32));
    Value* crossing =
        builder_.CreateShl(builder_.CreateShl(a.high, 1), builder_.CreateXor(near, 31));
    Value* low = builder_.CreateOr(builder_.CreateLShr(a.low, near), crossing);
    Value* high = sign == Sign::signed_ ? builder_.CreateAShr(a.high, near)
                                        : builder_.CreateLShr(a.high, near);
    return choice(isFar, {high, extended(a.high, sign).high}, {low, high});
}

Value* Pairs::isZero(Pair a) {
    return builder_.CreateIsNull(builder_.CreateOr(a.low, a.high));
}

Value* Pairs::isNegative(Pair a) {
    return builder_.CreateICmpSLT(a.high, Constant::getNullValue(a.high->getType()));
}

Value* Pairs::equal(Pair a, Pair b) {
    return isZero({builder_.CreateXor(a.low, b.low), builder_.CreateXor(a.high, b.high)});
}

Value* Pairs::less(Pair a, Pair b, Sign sign) {
    Value* isHighLess = sign == Sign::signed_ ? builder_.CreateICmpSLT(a.high, b.high)
                                              : builder_.CreateICmpULT(a.high, b.high);
    Value* isLowLess = builder_.CreateAnd(builder_.CreateICmpEQ(a.high, b.high),
                                          builder_.CreateICmpULT(a.low, b.low));
    return builder_.CreateOr(isHighLess, isLowLess);
}

Value* Pairs::compare(CmpInst::Predicate predicate, Pair a, Pair b) {
    const Sign sign = CmpInst::isSigned(predicate) ? Sign::signed_ : Sign::unsigned_;
    switch (predicate) {
    case CmpInst::ICMP_EQ:
        return equal(a, b);
    case CmpInst::ICMP_NE:
        return builder_.CreateNot(equal(a, b));
    case CmpInst::ICMP_ULT:
    case CmpInst::ICMP_SLT:
        return less(a, b, sign);
    case CmpInst::ICMP_UGT:
    case CmpInst::ICMP_SGT:
        return less(b, a, sign);
    case CmpInst::ICMP_UGE:
    case CmpInst::ICMP_SGE:
        return builder_.CreateNot(less(a, b, sign));
    default:
        return builder_.CreateNot(less(b, a, sign));
    }
}

Value* Pairs::population(Pair a) {
    return builder_.CreateAdd(function(Intrinsic::ctpop, a.low),
                              function(Intrinsic::ctpop, a.high));
}

Value* Pairs::leadingZeros(Pair a) {
    const auto zeros = [&](Value* of) {
        return builder_.CreateIntrinsic(of->getType(), Intrinsic::ctlz, {of, builder_.getFalse()});
    };
    return builder_.CreateSelect(builder_.CreateIsNull(a.high),
                                 builder_.CreateAdd(zeros(a.low), number(a.low, 32)),
                                 zeros(a.high));
}

Value* Pairs::trailingZeros(Pair a) {
    const auto zeros = [&](Value* of) {
        return builder_.CreateIntrinsic(of->getType(), Intrinsic::cttz, {of, builder_.getFalse()});
    };
    return builder_.CreateSelect(builder_.CreateIsNull(a.low),
                                 builder_.CreateAdd(zeros(a.high), number(a.low, 32)),
                                 zeros(a.low));
}

Pair Pairs::reversed(Pair a) {
    return {function(Intrinsic::bitreverse, a.high), function(Intrinsic::bitreverse, a.low)};
}

Pair Pairs::swappedBytes(Pair a) {
    return {function(Intrinsic::bswap, a.high), function(Intrinsic::bswap, a.low)};
}

// Of a pair whose upper word is less than `b`: then the quotient is a word.
Value* Pairs::quotientOfWords(Pair a, Value* b) {
    Value* shift =
        builder_.CreateIntrinsic(b->getType(), Intrinsic::ctlz, {b, builder_.getFalse()});
    const Pair dividend = shiftLeft(a, shift);
    Value* divisor = builder_.CreateShl(b, shift);
    Value* upper = builder_.CreateLShr(divisor, 16);
    Value* lower = builder_.CreateAnd(divisor, 0xffff);
    const auto digit = [&](Value* rest, Value* next) {
        Value* estimate = builder_.CreateUDiv(rest, upper);
        Value* remainder = builder_.CreateSub(rest, builder_.CreateMul(estimate, upper));
        for (int correction = 0; correction < 2; ++correction) {
            Value* isLong = builder_.CreateIsNotNull(builder_.CreateLShr(estimate, 16));
            Value* seen = builder_.CreateOr(builder_.CreateShl(remainder, 16), next);
            Value* isMore = builder_.CreateICmpUGT(builder_.CreateMul(estimate, lower), seen);
            Value* isShort = builder_.CreateIsNull(builder_.CreateLShr(remainder, 16));
            Value* isWrong = builder_.CreateAnd(isShort, builder_.CreateOr(isLong, isMore));
            Value* one = builder_.CreateZExt(isWrong, estimate->getType());
            estimate = builder_.CreateSub(estimate, one);
            remainder = builder_.CreateAdd(remainder, builder_.CreateMul(one, upper));
        }
        return estimate;
    };
    Value* nextHigh = builder_.CreateLShr(dividend.low, 16);
    Value* nextLow = builder_.CreateAnd(dividend.low, 0xffff);
    Value* high = digit(dividend.high, nextHigh);
    Value* rest =
        builder_.CreateSub(builder_.CreateOr(builder_.CreateShl(dividend.high, 16), nextHigh),
                           builder_.CreateMul(high, divisor));
    return builder_.CreateOr(builder_.CreateShl(high, 16), digit(rest, nextLow));
}

Pairs::Division Pairs::divideUnsigned(Pair a, Pair b) {
    Value* zero = Constant::getNullValue(a.low->getType());
    Value* one = number(a.low, 1);
    Value* isWord = builder_.CreateIsNull(b.high);
    // A divisor of one word: the upper word of the quotient first.
    Value* word = builder_.CreateBinaryIntrinsic(Intrinsic::umax, b.low, one);
    Value* high = builder_.CreateUDiv(a.high, word);
    Value* rest = builder_.CreateSub(a.high, builder_.CreateMul(high, word));
    // A longer divisor: its upper 32 bits, and half of the dividend.
    Value* shift = builder_.CreateAnd(
        builder_.CreateIntrinsic(b.high->getType(), Intrinsic::ctlz, {b.high, builder_.getFalse()}),
        31);
    Value* top = shiftLeft(b, shift).high;
    const Pair half = shiftRight(a, one, Sign::unsigned_);
    Value* estimate = quotientOfWords(choice(isWord, {a.low, rest}, half),
                                      builder_.CreateSelect(isWord, word, top));
    Value* reduced = builder_.CreateLShr(estimate, builder_.CreateXor(shift, number(a.low, 31)));
    reduced = builder_.CreateSub(
        reduced, builder_.CreateZExt(builder_.CreateIsNotNull(reduced), reduced->getType()));
    Pair quotient{builder_.CreateSelect(isWord, estimate, reduced),
                  builder_.CreateSelect(isWord, high, zero)};
    Pair remainder = subtract(a, multiply(quotient, b));
    Value* isOneMore = builder_.CreateAnd(builder_.CreateNot(isWord),
                                          builder_.CreateNot(less(remainder, b, Sign::unsigned_)));
    return {choice(isOneMore, add(quotient, {one, zero}), quotient),
            choice(isOneMore, subtract(remainder, b), remainder)};
}

Pairs::Division Pairs::divide(Pair a, Pair b, Sign sign) {
    if (sign == Sign::unsigned_)
        return divideUnsigned(a, b);
    const Division found = divideUnsigned(magnitude(a), magnitude(b));
    Value* isNegativeQuotient = builder_.CreateXor(isNegative(a), isNegative(b));
    return {choice(isNegativeQuotient, negated(found.quotient), found.quotient),
            choice(isNegative(a), negated(found.remainder), found.remainder)};
}

// The upper 30 bits of the number, whose last one is also set if a lower bit is: rounding them
// rounds the number, and a signed conversion takes them, which every device does exactly.
Value* Pairs::toFloat(Pair a, Sign sign) {
    const Pair size = sign == Sign::signed_ ? magnitude(a) : a;
    Value* zeros = leadingZeros(size);
    const Pair moved = shiftLeft(size, builder_.CreateAnd(zeros, 63));
    Value* rest = builder_.CreateOr(builder_.CreateAnd(moved.high, 3), moved.low);
    Value* isRest = builder_.CreateZExt(builder_.CreateIsNotNull(rest), rest->getType());
    Value* bits = builder_.CreateOr(builder_.CreateLShr(moved.high, 2), isRest);
    Type* real = bits->getType()->getWithNewType(builder_.getFloatTy());
    Value* exponent = builder_.CreateSub(number(bits, 127 + 34), zeros);
    Value* scale = builder_.CreateBitCast(builder_.CreateShl(exponent, 23), real);
    Value* result = builder_.CreateFMul(builder_.CreateSIToFP(bits, real), scale);
    return sign == Sign::signed_
               ? builder_.CreateSelect(isNegative(a), builder_.CreateFNeg(result), result)
               : result;
}

// Both products and the difference are exact.
Pair Pairs::fromFloat(Value* value, Sign sign) {
    Type* real = value->getType();
    Type* word = real->getWithNewType(builder_.getInt32Ty());
    Value* size = sign == Sign::signed_ ? function(Intrinsic::fabs, value) : value;
    Value* high =
        function(Intrinsic::floor, builder_.CreateFMul(size, ConstantFP::get(real, 0x1p-32)));
    Value* low =
        builder_.CreateFSub(size, builder_.CreateFMul(high, ConstantFP::get(real, 0x1p32)));
    const Pair found{builder_.CreateFPToUI(low, word), builder_.CreateFPToUI(high, word)};
    if (sign == Sign::unsigned_)
        return found;
    Value* isBelow = builder_.CreateFCmpOLT(value, Constant::getNullValue(real));
    return choice(isBelow, negated(found), found);
}

} // namespace tarnwick::msl
