// A half has 5 bits of exponent and 10 of fraction, a float 8 and 23 (IEEE 754-2019, 3.6). So the
// bits of a normal half, moved by 13, are those of a float, but for the exponent, which is 112
// more. A subnormal half is a multiple of 2^-24.
#include "TarnwickMSL/Translation/Passes/Widths/Halves.h"

namespace tarnwick::msl {

using namespace llvm;

constexpr std::uint32_t signBit = 0x80000000;
constexpr std::uint32_t infinity = 0x7f800000, halfInfinity = 0x7c00;
constexpr std::uint32_t greatestHalf = 0x477fe000;   // 65504 as a float
constexpr std::uint32_t smallestNormal = 0x38800000; // 2^-14 as a float
constexpr std::uint32_t addedExponent = 112u << 23;
constexpr unsigned addedBits = 13; // of the fraction

Value* Halves::asWords(Value* real) {
    return builder_.CreateBitCast(real, real->getType()->getWithNewType(builder_.getInt32Ty()));
}

Value* Halves::asReals(Value* words) {
    return builder_.CreateBitCast(words, words->getType()->getWithNewType(builder_.getFloatTy()));
}

Value* Halves::isAbove(Value* word, std::uint32_t limit) {
    return builder_.CreateICmpUGT(word, ConstantInt::get(word->getType(), limit));
}

Value* Halves::rounded(Value* real) {
    Type* type = real->getType();
    Value* word = asWords(real);
    Value* sign = builder_.CreateAnd(word, signBit);
    Value* size = builder_.CreateAnd(word, ~signBit);
    const auto constant = [&](std::uint32_t value) {
        return ConstantInt::get(word->getType(), value);
    };
    Value* isOdd = builder_.CreateAnd(builder_.CreateLShr(size, addedBits), 1);
    Value* next = builder_.CreateAdd(builder_.CreateAdd(size, constant(0xfff)), isOdd);
    Value* normal = builder_.CreateAnd(next, ~0x1fffu);
    normal = builder_.CreateSelect(isAbove(normal, greatestHalf), constant(infinity), normal);
    normal = builder_.CreateSelect(isAbove(size, infinity), size, normal);
    Value* steps = builder_.CreateUnaryIntrinsic(
        Intrinsic::roundeven, builder_.CreateFMul(asReals(size), ConstantFP::get(type, 0x1p24)));
    Value* subnormal = asWords(builder_.CreateFMul(steps, ConstantFP::get(type, 0x1p-24)));
    Value* found = builder_.CreateSelect(isAbove(size, smallestNormal - 1), normal, subnormal);
    return asReals(builder_.CreateOr(found, sign));
}

// The product is exact in float, the sum may not be. A sum that is inexact and even then takes its
// neighbour on the side of the error, which is odd (Boldo and Melquiond, Emulation of FMA and
// correctly rounded sums): no later rounding then mistakes it for a tie. The error is exact (Knuth,
// volume 2, 4.2.2, theorem B). NaN and infinity have none, since comparisons with NaN are false.
Value* Halves::fused(Value* a, Value* b, Value* c) {
    Value* product = builder_.CreateFMul(a, b);
    Value* sum = builder_.CreateFAdd(product, c);
    Value* second = builder_.CreateFSub(sum, product);
    Value* first = builder_.CreateFSub(sum, second);
    Value* error =
        builder_.CreateFAdd(builder_.CreateFSub(product, first), builder_.CreateFSub(c, second));
    Value* zero = Constant::getNullValue(sum->getType());
    Value* word = asWords(sum);
    Value* isAway =
        builder_.CreateXor(builder_.CreateFCmpOGT(error, zero), builder_.CreateFCmpOLT(sum, zero));
    Value* one = ConstantInt::get(word->getType(), 1);
    Value* step = builder_.CreateSelect(isAway, one, builder_.CreateNeg(one));
    Value* isEven = builder_.CreateIsNull(builder_.CreateAnd(word, one));
    Value* moves = builder_.CreateAnd(isEven, builder_.CreateFCmpONE(error, zero));
    return rounded(asReals(builder_.CreateSelect(moves, builder_.CreateAdd(word, step), word)));
}

Value* Halves::toBits(Value* half) {
    Value* word = asWords(half);
    Value* size = builder_.CreateAnd(word, ~signBit);
    const auto constant = [&](std::uint32_t value) {
        return ConstantInt::get(word->getType(), value);
    };
    Value* normal =
        builder_.CreateLShr(builder_.CreateSub(size, constant(addedExponent)), addedBits);
    Value* fraction = builder_.CreateAnd(builder_.CreateLShr(size, addedBits), 0x3ff);
    Value* quiet = builder_.CreateSelect(isAbove(size, infinity), constant(halfInfinity | 0x200),
                                         constant(halfInfinity));
    Value* special = builder_.CreateOr(fraction, quiet);
    Value* subnormal = builder_.CreateFPToUI(
        builder_.CreateFMul(asReals(size), ConstantFP::get(half->getType(), 0x1p24)),
        word->getType());
    Value* found = builder_.CreateSelect(isAbove(size, greatestHalf), special, normal);
    found = builder_.CreateSelect(isAbove(size, smallestNormal - 1), found, subnormal);
    Value* sign = builder_.CreateLShr(builder_.CreateAnd(word, signBit), 16);
    return builder_.CreateOr(found, sign);
}

Value* Halves::fromBits(Value* bits) {
    Value* size = builder_.CreateAnd(bits, 0x7fff);
    Value* moved = builder_.CreateShl(size, addedBits);
    Value* normal = builder_.CreateAdd(moved, ConstantInt::get(bits->getType(), addedExponent));
    Value* special = builder_.CreateOr(moved, infinity);
    Type* type = bits->getType()->getWithNewType(builder_.getFloatTy());
    Value* subnormal = asWords(
        builder_.CreateFMul(builder_.CreateSIToFP(size, type), ConstantFP::get(type, 0x1p-24)));
    Value* found = builder_.CreateSelect(isAbove(size, halfInfinity - 1), special, normal);
    found = builder_.CreateSelect(isAbove(size, 0x3ff), found, subnormal);
    Value* sign = builder_.CreateShl(builder_.CreateAnd(bits, 0x8000), 16);
    return asReals(builder_.CreateOr(found, sign));
}

} // namespace tarnwick::msl
