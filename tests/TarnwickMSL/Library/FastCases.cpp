#include "tests/TarnwickMSL/Library/References.h"

namespace tarnwick::trials {

namespace {

// One unit in the last place.
double unit(double result) {
    return std::ldexp(1.0, std::ilogb(result) - 23);
}

// What 3 + floor(|2 x|) units come to for an exponential of x.
double ofExponential(double x, double, double result) {
    return (3 + std::floor(std::abs(2 * x))) * unit(result);
}
double ofTenfold(double x, double, double result) {
    const double power = std::abs(x) * 3.3219281;
    return (3 + std::floor(2 * power) + 2 * power) * unit(result);
}
double ofLogarithm2(double x) {
    return x >= 0.5 && x <= 2 ? 0x1p-21 : 3 * 0x1p-23 * std::abs(std::log2(x));
}
double ofPower(double x, double y, double result) {
    const double power = std::abs(y * std::log2(x));
    const double inPower = std::abs(y) * ofLogarithm2(x) + power * 0x1p-24;
    return (3 + std::floor(2 * power)) * unit(result) +
           inPower * std::numbers::ln2 * std::abs(result);
}
// Of sin(x) / cos(x), each within 2^-13.
double ofTangent(double, double, double result) {
    return 0x1p-13 * (1 + std::abs(result)) * std::sqrt(1 + result * result) * 1.01;
}
double ofHyperbolic(double x, double, double) {
    return (4 + 2 * std::abs(x)) * unit(std::exp(std::abs(x)));
}
double ofTanh(double x, double, double result) {
    return (6 + 4 * std::abs(x)) * 0x1p-24 * (1 - result * result) + 0x1p-22;
}
// Of a logarithm whose argument is a few roundings off.
double ofInverse(double, double, double result) {
    return 0x1p-20 + 4 * unit(result);
}

} // namespace

std::vector<Case> fastCases() {
    const Inputs turn = linear(-std::numbers::pi, std::numbers::pi), once = linear(-1, 1);
    const Inputs nearOne = linear(0.5, 2), above = logarithmic(2, 1e37),
                 below = logarithmic(1e-37, 0.5);
    const Bound trigonometric{"2⁻¹³ absolute", 0, 0x1p-13}, nearLog{"2⁻²¹ absolute", 0, 0x1p-21};
    const Bound exponential{"3 + ⌊\\|2x\\|⌋ ulp", 0, 0, ofExponential};
    const char* const logarithm = "mantissa in [√½, √2), minimax polynomial of atanh";
    const Bound power{"as exp2(y log2(x))", 0, 0, ofPower};
    // clang-format off
    return {
        {"sin, [-π, π]", "Sin", "r = sin(x);", {turn}, TRUTH(std::sin(x)), trigonometric},
        {"sin, [-10⁵, 10⁵]", "Sin", "r = sin(x);", {linear(-1e5, 1e5)}, TRUTH(std::sin(x)), trigonometric},
        {"cos, [-10⁵, 10⁵]", "Cos", "r = cos(x);", {linear(-1e5, 1e5)}, TRUTH(std::cos(x)), trigonometric},
        {"cos, [-π, π]", "Cos", "r = cos(x);", {turn}, TRUTH(std::cos(x)), trigonometric},
        {"sincos, sine, [-π, π]", "Sin, Cos", "T w; r = sincos(x, w);", {turn}, TRUTH(std::sin(x)), trigonometric},
        {"sincos, cosine, [-π, π]", "Sin, Cos", "sincos(x, r);", {turn}, TRUTH(std::cos(x)), trigonometric},
        {"tan, [-1.5, 1.5]", "sin(x) / cos(x)", "r = tan(x);", {linear(-1.5, 1.5)}, TRUTH(std::tan(x)), {"as sin(x) / cos(x)", 0, 0, ofTangent}},
        {"sinpi, [-1, 1]", "Sin of π x", "r = sinpi(x);", {once}, TRUTH(sineOfHalfTurns(x)), trigonometric},
        {"cospi, [-1, 1]", "Cos of π x", "r = cospi(x);", {once}, TRUTH(cosineOfHalfTurns(x)), trigonometric},
        {"tanpi, [-0.45, 0.45]", "sin / cos of π x", "r = tanpi(x);", {linear(-0.45, 0.45)}, TRUTH(std::tan(pi * x)), {"as tan(π x)", 0, 0, ofTangent}},
        {"asin", "as precise::asin", "r = asin(x);", {bothSigns(1e-37, 1)}, TRUTH(std::asin(x)), ulps(5)},
        {"acos", "as precise::acos", "r = acos(x);", {once}, TRUTH(std::acos(x)), ulps(5)},
        {"atan", "as precise::atan", "r = atan(x);", {bothSigns(1e-30, 1e30)}, TRUTH(std::atan(x)), ulps(5)},
        {"atan2", "as precise::atan2", "r = atan2(x, y);", {linear(-9, 9), linear(-9, 9)}, TRUTH(std::atan2(x, y)), ulps(6)},
        {"sinh", "(e - 1/e) / 2 of \\|x\\|, with its sign", "r = sinh(x);", {linear(-88, 88)}, TRUTH(std::sinh(x)), {"as its formula", 0, 0, ofHyperbolic}},
        {"cosh", "(e + 1/e) / 2 of \\|x\\|", "r = cosh(x);", {linear(-88, 88)}, TRUTH(std::cosh(x)), {"as its formula", 0, 0, ofHyperbolic}},
        {"tanh", "1 - 2 / (exp(2 x) + 1)", "r = tanh(x);", {linear(-40, 40)}, TRUTH(std::tanh(x)), {"as its formula", 0, 0, ofTanh}},
        {"asinh", "log of \\|x\\| + √(x² + 1)", "r = asinh(x);", {bothSigns(1e-3, 1e15)}, TRUTH(std::asinh(x)), {"as its formula", 0, 0, ofInverse}},
        {"acosh, [1.1, ∞)", "log of x + √(x² - 1)", "r = acosh(x);", {logarithmic(1.1, 1e15)}, TRUTH(std::acosh(x)), {"as its formula", 0, 0, ofInverse}},
        {"atanh, [-0.95, 0.95]", "log of (1 + x) / (1 - x), halved", "r = atanh(x);", {linear(-0.95, 0.95)}, TRUTH(std::atanh(x)), {"as its formula", 0, 0, ofInverse}},
        {"exp, [-1, 1]", "exp2 of x log2(e)", "r = exp(x);", {once}, TRUTH(std::exp(x)), exponential},
        {"exp", "exp2 of x log2(e)", "r = exp(x);", {linear(-85, 88)}, TRUTH(std::exp(x)), exponential},
        {"exp2", "whole part into the exponent, minimax polynomial", "r = exp2(x);", {linear(-124, 127)}, TRUTH(std::exp2(x)), exponential},
        {"exp10", "exp2 of x log2(10)", "r = exp10(x);", {linear(-37, 38)}, TRUTH(std::pow(10.0L, x)), {"as its formula", 0, 0, ofTenfold}},
        {"log, [½, 2]", logarithm, "r = log(x);", {nearOne}, TRUTH(std::log(x)), nearLog},
        {"log, above 2", logarithm, "r = log(x);", {above}, TRUTH(std::log(x)), ulps(3)},
        {"log, below ½", logarithm, "r = log(x);", {below}, TRUTH(std::log(x)), ulps(3)},
        {"log2, [½, 2]", "Log2", "r = log2(x);", {nearOne}, TRUTH(std::log2(x)), nearLog},
        {"log2, above 2", "Log2", "r = log2(x);", {above}, TRUTH(std::log2(x)), ulps(3)},
        {"log2, below ½", "Log2", "r = log2(x);", {below}, TRUTH(std::log2(x)), ulps(3)},
        {"log10, [½, 2]", "Log2 times log10(2)", "r = log10(x);", {nearOne}, TRUTH(std::log10(x)), nearLog},
        {"log10, above 2", "Log2 times log10(2)", "r = log10(x);", {above}, TRUTH(std::log10(x)), ulps(4)},
        {"log10, below ½", "Log2 times log10(2)", "r = log10(x);", {below}, TRUTH(std::log10(x)), ulps(4)},
        {"pow", "exp2 of y Log2(x); x x for y = 2", "r = pow(x, y);", {linear(0.01, 10), linear(-6, 6)}, TRUTH(std::pow(x, y)), power},
        {"pow, far", "exp2 of y Log2(x); x x for y = 2", "r = pow(x, y);", {logarithmic(1e-6, 1e6), linear(-5, 5)}, TRUTH(std::pow(x, y)), power},
        {"powr", "exp2 of y Log2(x); x x for y = 2", "r = powr(x, y);", {linear(0.01, 10), linear(-6, 6)}, TRUTH(std::pow(x, y)), power},
        {"sqrt", "Sqrt", "r = sqrt(x);", {logarithmic(1e-37, 1e38)}, TRUTH(std::sqrt(x)), ulps(1)},
        {"rsqrt", "1 / Sqrt", "r = rsqrt(x);", {logarithmic(1e-37, 1e38)}, TRUTH(1 / std::sqrt(x)), ulps(2)},
        {"x / y", "quotient", "r = x / y;", {linear(-9, 9), bothSigns(1e-30, 1e30)}, TRUTH(x / y), {"2.5 ulp", 2.5}},
        {"1 / x", "quotient", "r = T(1) / x;", {bothSigns(1e-37, 1e37)}, TRUTH(1 / x), ulps(1)},
        {"divide", "quotient", "r = divide(x, y);", {linear(-9, 9), bothSigns(1e-30, 1e30)}, TRUTH(x / y), {"2.5 ulp", 2.5}},
        {"fract", "x - floor(x), below 1", "r = fract(x);", {bothSigns(1e-12, 1e9)}, TRUTH(fraction(x, 0x1.fffffep-1L)), rounded()},
        {"modf, fraction", "x - Trunc", "T w; r = modf(x, w);", {bothSigns(1e-3, 1e9)}, TRUTH(x - std::trunc(x)), exactly()},
        {"modf, whole", "Trunc", "modf(x, r);", {bothSigns(1e-3, 1e9)}, TRUTH(std::trunc(x)), exactly()},
        {"fmod, near", "x - y trunc(x / y)", "r = fmod(x, y);", {linear(0, 9), whole(1, 8)}, TRUTH(std::fmod(x, y)), {"undefined", 0, 4e-6}},
    };
    // clang-format on
}

} // namespace tarnwick::trials
