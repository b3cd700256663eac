#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Calls.h"
#include "TarnwickMSL/Translation/Wgsl/Operations.h"

#include <llvm/IR/Operator.h>

#include <array>
#include <cmath>
#include <numbers>

namespace tarnwick::msl::wgsl {

using namespace llvm;

namespace {

struct Direct {
    Intrinsic::ID intrinsic;
    std::string_view function;
    Sign sign = Sign::no; // of integers
};

} // namespace

// clang-format off
static constexpr std::array directs{
    Direct{Intrinsic::fabs,       "abs"},
    Direct{Intrinsic::floor,      "floor"},
    Direct{Intrinsic::ceil,       "ceil"},
    Direct{Intrinsic::trunc,      "trunc"},
    Direct{Intrinsic::rint,       "round"},
    Direct{Intrinsic::nearbyint,  "round"},
    Direct{Intrinsic::roundeven,  "round"},
    Direct{Intrinsic::sqrt,       "sqrt"},
    Direct{Intrinsic::sin,        "sin"},
    Direct{Intrinsic::cos,        "cos"},
    Direct{Intrinsic::tan,        "tan"},
    Direct{Intrinsic::asin,       "asin"},
    Direct{Intrinsic::acos,       "acos"},
    Direct{Intrinsic::atan,       "atan"},
    Direct{Intrinsic::sinh,       "sinh"},
    Direct{Intrinsic::cosh,       "cosh"},
    Direct{Intrinsic::tanh,       "tanh"},
    Direct{Intrinsic::exp,        "exp"},
    Direct{Intrinsic::exp2,       "exp2"},
    Direct{Intrinsic::log,        "log"},
    Direct{Intrinsic::log2,       "log2"},
    Direct{Intrinsic::pow,        "pow"},
    Direct{Intrinsic::fma,        "fma"},
    Direct{Intrinsic::smin,       "min", Sign::yes},
    Direct{Intrinsic::smax,       "max", Sign::yes},
    Direct{Intrinsic::umin,       "min"},
    Direct{Intrinsic::umax,       "max"},
    Direct{Intrinsic::abs,        "abs", Sign::yes},
    Direct{Intrinsic::ctpop,      "countOneBits"},
    Direct{Intrinsic::bitreverse, "reverseBits"},
};
// clang-format on

namespace {

// The operands of one call, and short forms of the operations that lower it.
class Lowering {
  public:
    Lowering(Body& body, const IntrinsicInst& call)
        : body_(body), call_(call), type_(call.getType()) {}
    std::optional<Expression> integer();
    std::optional<Expression> real();

  private:
    Expression operand(unsigned n) { return body_.unsignedValue(call_.getArgOperand(n)); }
    Expression kept(unsigned n) { return body_.named(operand(n), "operand"); }
    Expression number(std::uint32_t value) {
        return body_.constant(ConstantInt::get(type_, value));
    }
    Expression bits(const Expression& value) {
        return body_.bitcast(shapedLike(type_, body_.i32()), type_, value);
    }
    Expression fromBits(const Expression& value) {
        return body_.bitcast(type_, shapedLike(type_, body_.i32()), value);
    }
    Expression swappedBytes();
    Expression funnel(bool toLeft);
    Expression saturatedUnsigned(bool isAddition);
    Expression saturatedSigned(bool isAddition);
    Expression copySign(const Expression& magnitude, const Expression& sign);
    Expression roundAway();
    Expression least(bool isLeast);
    Expression propagating(bool isLeast);
    Expression integerPower();
    Expression scaledByPower();

    Body& body_;
    const IntrinsicInst& call_;
    Type* type_;
};

} // namespace

Expression Lowering::swappedBytes() {
    const Expression value = kept(0);
    const Expression ends =
        infix(infix(value, "<<", number(24)), "|", infix(value, ">>", number(24)));
    const Expression up =
        infix(infix(infix(value, "&", number(0xff00)), "<<", number(8)), "|", ends);
    return infix(infix(infix(value, ">>", number(8)), "&", number(0xff00)), "|", up);
}

// The far side moves by one first, so that a distance of zero never shifts by the whole width.
Expression Lowering::funnel(bool toLeft) {
    const Expression high = operand(0), low = operand(1);
    const Expression near = body_.named(infix(operand(2), "&", number(31)), "distance");
    const Expression far = infix(number(31), "-", near), one = number(1);
    const Expression left =
        infix(toLeft ? high : infix(high, "<<", one), "<<", toLeft ? near : far);
    const Expression right = infix(toLeft ? infix(low, ">>", one) : low, ">>", toLeft ? far : near);
    return infix(left, "|", right);
}

Expression Lowering::saturatedUnsigned(bool isAddition) {
    const Expression a = kept(0), b = kept(1);
    if (!isAddition)
        return infix(call("max", {a, b}), "-", b);
    return infix(a, "+", call("min", {b, prefix("~", a)}));
}

// Addition overflows if both operands have another sign than the result. Subtraction overflows if
// the operands' signs differ and the result's differs from the first's.
Expression Lowering::saturatedSigned(bool isAddition) {
    const Expression a = kept(0), b = kept(1);
    const Expression result = body_.named(infix(a, isAddition ? "+" : "-", b), "result");
    const Expression changed = infix(a, "^", result);
    const Expression other = infix(isAddition ? b : a, "^", isAddition ? result : b);
    const Expression overflows =
        infix(infix(infix(changed, "&", other), ">>", number(31)), "!=", number(0));
    const Expression end = infix(infix(a, ">>", number(31)), "+", number(0x7fffffff));
    return choice(overflows, end, result);
}

Expression Lowering::copySign(const Expression& magnitude, const Expression& sign) {
    Type* words = shapedLike(type_, body_.i32());
    const auto masked = [&](const Expression& value, std::uint32_t mask) {
        return infix(bits(value), "&", body_.constant(ConstantInt::get(words, mask)));
    };
    return fromBits(infix(masked(sign, 0x80000000u), "|", masked(magnitude, 0x7fffffffu)));
}

// To the nearest, halves away from zero; adding a half first would round 0.49999997 up.
Expression Lowering::roundAway() {
    const Expression value = kept(0);
    const Expression whole = body_.named(call("trunc", {value}), "whole");
    const Expression rest = call("abs", {infix(value, "-", whole)});
    const Expression half = body_.real(type_, 0.5);
    return choice(infix(rest, ">=", half), infix(whole, "+", call("sign", {value})), whole);
}

// A number if only one operand is NaN. Fast code need not handle NaN.
Expression Lowering::least(bool isLeast) {
    const std::string_view function = isLeast ? "min" : "max";
    if (isa<FPMathOperator>(call_) && call_.hasApproxFunc())
        return call(function, {operand(0), operand(1)});
    const Expression a = kept(0), b = kept(1);
    const Expression first = choice(isNan(body_, type_, b), a, call(function, {a, b}));
    return choice(isNan(body_, type_, a), b, first);
}

// IEEE 754-2019 minimum and maximum: NaN if either operand is NaN.
Expression Lowering::propagating(bool isLeast) {
    const Expression a = kept(0), b = kept(1);
    const Expression first =
        choice(isNan(body_, type_, b), b, call(isLeast ? "min" : "max", {a, b}));
    return choice(isNan(body_, type_, a), a, first);
}

// By repeated squaring: the exponent is a constant in practice.
Expression Lowering::integerPower() {
    auto* constant = dyn_cast<ConstantInt>(call_.getArgOperand(1));
    if (!constant)
        throw CompilerFault("A power with an integer exponent that is not constant.");
    const std::int64_t exponent = constant->getSExtValue();
    Expression base = kept(0), power;
    for (auto left = static_cast<std::uint64_t>(std::abs(exponent)); left; left >>= 1) {
        if (left & 1)
            power = power.text.empty() ? base : body_.named(infix(power, "*", base), "power");
        if (left > 1)
            base = body_.named(infix(base, "*", base), "base");
    }
    const Expression one = body_.real(type_, 1);
    if (power.text.empty())
        power = one;
    return exponent < 0 ? infix(one, "/", power) : power;
}

// WGSL refuses constant exponents above 128, and gives any result for others.
Expression Lowering::scaledByPower() {
    const Value* exponent = call_.getArgOperand(1);
    Expression by = isa<Constant>(exponent)
                        ? body_.withSign(body_.atRunTime(cast<Constant>(exponent)),
                                         exponent->getType(), Sign::yes)
                        : body_.signedValue(exponent);
    return call("ldexp", {operand(0), by});
}

std::optional<Expression> Lowering::integer() {
    switch (call_.getIntrinsicID()) {
    case Intrinsic::ctlz:
        return call("countLeadingZeros", {operand(0)});
    case Intrinsic::cttz:
        return call("countTrailingZeros", {operand(0)});
    case Intrinsic::bswap:
        return swappedBytes();
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
        return body_.zero(type_);
    default:
        return std::nullopt;
    }
}

std::optional<Expression> Lowering::real() {
    const auto scaled = [&](const Expression& value, double factor) {
        return infix(value, "*", body_.real(type_, factor));
    };
    switch (call_.getIntrinsicID()) {
    case Intrinsic::fmuladd:
        return infix(infix(operand(0), "*", operand(1)), "+", operand(2));
    case Intrinsic::copysign:
        return copySign(operand(0), operand(1));
    case Intrinsic::round:
        return roundAway();
    case Intrinsic::minnum:
    case Intrinsic::maxnum:
        return least(call_.getIntrinsicID() == Intrinsic::minnum);
    case Intrinsic::minimum:
    case Intrinsic::maximum:
        return propagating(call_.getIntrinsicID() == Intrinsic::minimum);
    case Intrinsic::exp10:
        return call("exp2", {scaled(operand(0), std::log2(10.0))});
    case Intrinsic::log10:
        return scaled(call("log2", {operand(0)}), std::numbers::ln2 / std::numbers::ln10);
    case Intrinsic::powi:
        return integerPower();
    case Intrinsic::ldexp:
        return scaledByPower();
    case Intrinsic::frexp:
        return call("frexp", {operand(0)});
    case Intrinsic::fptosi_sat:
    case Intrinsic::fptoui_sat:
        return saturated(body_, type_, call_.getArgOperand(0)->getType(), operand(0),
                         call_.getIntrinsicID() == Intrinsic::fptosi_sat ? Sign::yes : Sign::no);
    default:
        return std::nullopt;
    }
}

Expression writeIntrinsic(Body& body, const IntrinsicInst& call) {
    for (const Direct& known : directs) {
        if (known.intrinsic != call.getIntrinsicID())
            continue;
        std::vector<Expression> operands;
        const unsigned count = call.getIntrinsicID() == Intrinsic::abs ? 1 : call.arg_size();
        for (unsigned operand = 0; operand < count; ++operand)
            operands.push_back(known.sign == Sign::yes
                                   ? body.signedValue(call.getArgOperand(operand))
                                   : body.unsignedValue(call.getArgOperand(operand)));
        Expression made = wgsl::call(known.function, operands);
        made.isSigned = known.sign == Sign::yes;
        return made;
    }
    Lowering lowering(body, call);
    if (auto made = lowering.real())
        return *made;
    if (auto made = lowering.integer())
        return *made;
    throw CompilerFault("An intrinsic is left: " + call.getCalledFunction()->getName().str());
}

} // namespace tarnwick::msl::wgsl
