#include "TarnwickMSL/Translation/Spirv/Intrinsics.h"

#include "TarnwickMSL/Translation/Spirv/Arithmetic.h"
#include "TarnwickMSL/Translation/Spirv/Integers.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/Operator.h>

#include <array>
#include <cmath>
#include <numbers>

namespace tarnwick::msl::spirv {

using namespace llvm;

struct Direct {
    Intrinsic::ID intrinsic;
    GLSLstd450 instruction;
};

// clang-format off
static constexpr std::array directs{
    Direct{Intrinsic::fabs,      GLSLstd450FAbs},
    Direct{Intrinsic::floor,     GLSLstd450Floor},
    Direct{Intrinsic::ceil,      GLSLstd450Ceil},
    Direct{Intrinsic::trunc,     GLSLstd450Trunc},
    Direct{Intrinsic::rint,      GLSLstd450RoundEven},
    Direct{Intrinsic::nearbyint, GLSLstd450RoundEven},
    Direct{Intrinsic::roundeven, GLSLstd450RoundEven},
    Direct{Intrinsic::sqrt,      GLSLstd450Sqrt},
    Direct{Intrinsic::sin,       GLSLstd450Sin},
    Direct{Intrinsic::cos,       GLSLstd450Cos},
    Direct{Intrinsic::tan,       GLSLstd450Tan},
    Direct{Intrinsic::asin,      GLSLstd450Asin},
    Direct{Intrinsic::acos,      GLSLstd450Acos},
    Direct{Intrinsic::atan,      GLSLstd450Atan},
    Direct{Intrinsic::sinh,      GLSLstd450Sinh},
    Direct{Intrinsic::cosh,      GLSLstd450Cosh},
    Direct{Intrinsic::tanh,      GLSLstd450Tanh},
    Direct{Intrinsic::exp,       GLSLstd450Exp},
    Direct{Intrinsic::exp2,      GLSLstd450Exp2},
    Direct{Intrinsic::log,       GLSLstd450Log},
    Direct{Intrinsic::log2,      GLSLstd450Log2},
    Direct{Intrinsic::pow,       GLSLstd450Pow},
    Direct{Intrinsic::fma,       GLSLstd450Fma},
    Direct{Intrinsic::minnum,    GLSLstd450NMin},
    Direct{Intrinsic::maxnum,    GLSLstd450NMax},
    Direct{Intrinsic::ldexp,     GLSLstd450Ldexp},
    Direct{Intrinsic::frexp,     GLSLstd450FrexpStruct},
    Direct{Intrinsic::smin,      GLSLstd450SMin},
    Direct{Intrinsic::smax,      GLSLstd450SMax},
    Direct{Intrinsic::umin,      GLSLstd450UMin},
    Direct{Intrinsic::umax,      GLSLstd450UMax},
};
// clang-format on

static Type* bitsOf(Type* type) {
    return shapedLike(type, Type::getIntNTy(type->getContext(), type->getScalarSizeInBits()));
}

static Id masked(Body& body, Type* bits, Id value, const APInt& mask) {
    return body.emit(spv::Op::OpBitwiseAnd, bits,
                     {value, body.constants.of(ConstantInt::get(bits, mask))});
}

static Id copySign(Body& body, Type* type, Id magnitude, Id sign) {
    Type* bits = bitsOf(type);
    APInt signBit = APInt::getSignMask(type->getScalarSizeInBits());
    Id taken = masked(body, bits, body.bitcast(bits, type, sign), signBit);
    Id kept = masked(body, bits, body.bitcast(bits, type, magnitude), ~signBit);
    return body.bitcast(type, bits, body.emit(spv::Op::OpBitwiseOr, bits, {taken, kept}));
}

// To the nearest, halves away from zero; adding a half first would round 0.49999997 up.
static Id roundAway(Body& body, Type* type, Id value) {
    Type* boolean = shapedLike(type, body.i1());
    Id whole = body.extended(GLSLstd450Trunc, type, {value});
    Id rest = body.emit(spv::Op::OpFSub, type, {value, whole});
    Id size = body.extended(GLSLstd450FAbs, type, {rest});
    Id isHalf =
        body.emit(spv::Op::OpFOrdGreaterThanEqual, boolean, {size, body.constants.real(type, 0.5)});
    Id one = copySign(body, type, body.constants.real(type, 1), value);
    Id further = body.emit(spv::Op::OpFAdd, type, {whole, one});
    return body.select(type, isHalf, further, whole);
}

// IEEE 754-2019 minimum and maximum: NaN if either operand is NaN.
static Id propagating(Body& body, Type* type, GLSLstd450 instruction, Id a, Id b) {
    Type* boolean = shapedLike(type, body.i1());
    Id chosen = body.extended(instruction, type, {a, b});
    Id bad = body.emit(spv::Op::OpFUnordNotEqual, boolean, {b, b});
    Id first = body.select(type, bad, b, chosen);
    return body.select(type, body.emit(spv::Op::OpIsNan, boolean, {a}), a, first);
}

static Id scaled(Body& body, Type* type, Id value, double factor) {
    return body.emit(spv::Op::OpFMul, type, {value, body.constants.real(type, factor)});
}

static Id multiplyAdd(Body& body, const IntrinsicInst& call) {
    Type* type = call.getType();
    Id product = writeFloat(body, call, spv::Op::OpFMul, type,
                            {body.id(call.getArgOperand(0)), body.id(call.getArgOperand(1))});
    return writeFloat(body, call, spv::Op::OpFAdd, type, {product, body.id(call.getArgOperand(2))});
}

// By repeated squaring: the exponent is a constant in practice.
static Id integerPower(Body& body, const IntrinsicInst& call) {
    Type* type = call.getType();
    auto* constant = dyn_cast<ConstantInt>(call.getArgOperand(1));
    if (!constant)
        throw CompilerFault("A power with an integer exponent that is not constant.");
    std::int64_t exponent = constant->getSExtValue();
    Id base = body.id(call.getArgOperand(0));
    Id one = body.constants.real(type, 1);
    Id power = one;
    for (auto left = static_cast<std::uint64_t>(std::abs(exponent)); left; left >>= 1) {
        if (left & 1)
            power = power == one ? base : body.emit(spv::Op::OpFMul, type, {power, base});
        if (left > 1)
            base = body.emit(spv::Op::OpFMul, type, {base, base});
    }
    return exponent < 0 ? body.emit(spv::Op::OpFDiv, type, {one, power}) : power;
}

// Numbers out of the type's range become its ends; NaN becomes 0.
static Id saturated(Body& body, const IntrinsicInst& call, bool isSigned) {
    Type* type = call.getType();
    Type* from = call.getArgOperand(0)->getType();
    Type* boolean = shapedLike(type, body.i1());
    unsigned bits = type->getScalarSizeInBits();
    Id value = body.id(call.getArgOperand(0));
    double above = std::ldexp(1.0, static_cast<int>(isSigned ? bits - 1 : bits));
    double below = isSigned ? -above : 0.0;
    APInt most = isSigned ? APInt::getSignedMaxValue(bits) : APInt::getMaxValue(bits);
    APInt least = isSigned ? APInt::getSignedMinValue(bits) : APInt::getZero(bits);
    Id number =
        body.emit(isSigned ? spv::Op::OpConvertFToS : spv::Op::OpConvertFToU, type, {value});
    auto where = [&](spv::Op op, double limit, const APInt& end) {
        Id is = body.emit(op, boolean, {value, body.constants.real(from, limit)});
        number = body.select(type, is, body.constants.of(ConstantInt::get(type, end)), number);
    };
    where(spv::Op::OpFOrdGreaterThanEqual, above, most);
    where(spv::Op::OpFOrdLessThan, below, least);
    Id isNan = body.emit(spv::Op::OpIsNan, boolean, {value});
    return body.select(type, isNan, body.constants.null(type), number);
}

static Id writeFloatIntrinsic(Body& body, const IntrinsicInst& call) {
    Type* type = call.getType();
    auto operand = [&](unsigned n) { return body.id(call.getArgOperand(n)); };
    switch (call.getIntrinsicID()) {
    case Intrinsic::fmuladd:
        return multiplyAdd(body, call);
    case Intrinsic::copysign:
        return copySign(body, type, operand(0), operand(1));
    case Intrinsic::round:
        return roundAway(body, type, operand(0));
    case Intrinsic::minimum:
        return propagating(body, type, GLSLstd450NMin, operand(0), operand(1));
    case Intrinsic::maximum:
        return propagating(body, type, GLSLstd450NMax, operand(0), operand(1));
    case Intrinsic::exp10:
        return body.extended(GLSLstd450Exp2, type,
                             {scaled(body, type, operand(0), std::log2(10.0))});
    case Intrinsic::log10:
        return scaled(body, type, body.extended(GLSLstd450Log2, type, {operand(0)}),
                      std::numbers::ln2 / std::numbers::ln10);
    case Intrinsic::powi:
        return integerPower(body, call);
    case Intrinsic::fptosi_sat:
        return saturated(body, call, true);
    case Intrinsic::fptoui_sat:
        return saturated(body, call, false);
    default:
        return 0;
    }
}

// Fast code need not handle NaN. Drivers turn FMin and FMax into clamps and saturation; NMin and
// NMax they execute as written.
static GLSLstd450 relaxed(GLSLstd450 instruction, const IntrinsicInst& call) {
    if (!isa<FPMathOperator>(call) || !call.hasApproxFunc())
        return instruction;
    return instruction == GLSLstd450NMin   ? GLSLstd450FMin
           : instruction == GLSLstd450NMax ? GLSLstd450FMax
                                           : instruction;
}

Id writeIntrinsic(Body& body, const IntrinsicInst& call) {
    for (const Direct& known : directs)
        if (known.intrinsic == call.getIntrinsicID())
            return body.extended(relaxed(known.instruction, call), call.getType(),
                                 body.operands(call, 0, call.arg_size()));
    if (Id id = writeFloatIntrinsic(body, call))
        return id;
    if (Id id = writeIntegerIntrinsic(body, call))
        return id;
    throw CompilerFault("An intrinsic is left: " + call.getCalledFunction()->getName().str());
}

} // namespace tarnwick::msl::spirv
