#include "tests/TarnwickMSL/Library/References.h"

namespace tarnwick::trials {

std::vector<Case> preciseCases() {
    const Inputs any = bothSigns(1e-30, 1e30), positive = logarithmic(1e-37, 1e38);
    const Inputs unit = linear(-1, 1), moderate = linear(-20, 20);
    const auto all = Specials::all;
    const char* const exponential = "reduction by ln 2, minimax polynomial";
    const char* const logarithm = "mantissa in [√½, √2), minimax polynomial";
    const char* const circular = "reduction after Cody and Waite, or Payne and Hanek; polynomials";
    const char* const halfTurns = "exact reduction, minimax polynomials";
    const char* const inverse = "minimax polynomial on half the domain";
    const char* const hyperbolic = "polynomial near 0, else from the exponential";
    const char* const viaLogarithm = "logarithm of 1 + x, corrected";
    // clang-format off
    return {
        {"precise::sin", circular, "r = precise::sin(x);", {any}, TRUTH(std::sin(x)), ulps(4), all},
        {"precise::sin, [-10, 10]", circular, "r = precise::sin(x);", {linear(-10, 10)}, TRUTH(std::sin(x)), ulps(4)},
        {"precise::cos", circular, "r = precise::cos(x);", {any}, TRUTH(std::cos(x)), ulps(4), all},
        {"precise::cos, [-10, 10]", circular, "r = precise::cos(x);", {linear(-10, 10)}, TRUTH(std::cos(x)), ulps(4)},
        {"precise::sincos, sine", circular, "T w; r = precise::sincos(x, w);", {any}, TRUTH(std::sin(x)), ulps(4), all},
        {"precise::sincos, cosine", circular, "precise::sincos(x, r);", {any}, TRUTH(std::cos(x)), ulps(4), all},
        {"precise::tan", circular, "r = precise::tan(x);", {any}, TRUTH(std::tan(x)), ulps(6), all},
        {"precise::sinpi", halfTurns, "r = precise::sinpi(x);", {bothSigns(1e-20, 1e8)}, TRUTH(sineOfHalfTurns(x)), ulps(4), all},
        {"precise::cospi", halfTurns, "r = precise::cospi(x);", {bothSigns(1e-20, 1e8)}, TRUTH(cosineOfHalfTurns(x)), ulps(4), all},
        {"precise::tanpi", halfTurns, "r = precise::tanpi(x);", {bothSigns(1e-20, 1e6)}, TRUTH(tangentOfHalfTurns(x)), ulps(6), all},
        {"precise::asin", inverse, "r = precise::asin(x);", {unit}, TRUTH(std::asin(x)), ulps(4), all},
        {"precise::asin, tiny", inverse, "r = precise::asin(x);", {bothSigns(1e-37, 1)}, TRUTH(std::asin(x)), ulps(4)},
        {"precise::acos", inverse, "r = precise::acos(x);", {unit}, TRUTH(std::acos(x)), ulps(4), all},
        {"precise::atan", inverse, "r = precise::atan(x);", {any}, TRUTH(std::atan(x)), ulps(5), all},
        {"precise::atan2", inverse, "r = precise::atan2(x, y);", {any, any}, TRUTH(std::atan2(x, y)), ulps(6), all},
        {"precise::atan2, [-4, 4]", inverse, "r = precise::atan2(x, y);", {linear(-4, 4), linear(-4, 4)}, TRUTH(std::atan2(x, y)), ulps(6)},
        {"precise::sinh", hyperbolic, "r = precise::sinh(x);", {bothSigns(1e-30, 89)}, TRUTH(std::sinh(x)), ulps(4), all},
        {"precise::cosh", hyperbolic, "r = precise::cosh(x);", {linear(-89, 89)}, TRUTH(std::cosh(x)), ulps(4), all},
        {"precise::tanh", hyperbolic, "r = precise::tanh(x);", {bothSigns(1e-30, 100)}, TRUTH(std::tanh(x)), ulps(5), all},
        {"precise::asinh", viaLogarithm, "r = precise::asinh(x);", {any}, TRUTH(std::asinh(x)), ulps(4), all},
        {"precise::acosh", viaLogarithm, "r = precise::acosh(x);", {logarithmic(1, 1e30)}, TRUTH(std::acosh(x)), ulps(4), all},
        {"precise::acosh, [1, 2]", viaLogarithm, "r = precise::acosh(x);", {linear(1, 2)}, TRUTH(std::acosh(x)), ulps(4)},
        {"precise::atanh", viaLogarithm, "r = precise::atanh(x);", {unit}, TRUTH(std::atanh(x)), ulps(5), all},
        {"precise::atanh, tiny", viaLogarithm, "r = precise::atanh(x);", {bothSigns(1e-37, 1)}, TRUTH(std::atanh(x)), ulps(5)},
        {"precise::exp", exponential, "r = precise::exp(x);", {linear(-110, 90)}, TRUTH(std::exp(x)), ulps(4), all},
        {"precise::exp, [-1, 1]", exponential, "r = precise::exp(x);", {unit}, TRUTH(std::exp(x)), ulps(4)},
        {"precise::exp2", exponential, "r = precise::exp2(x);", {linear(-155, 130)}, TRUTH(std::exp2(x)), ulps(4), all},
        {"precise::exp10", exponential, "r = precise::exp10(x);", {linear(-46, 39)}, TRUTH(std::pow(10.0L, x)), ulps(4), all},
        {"precise::log", logarithm, "r = precise::log(x);", {positive}, TRUTH(std::log(x)), ulps(4), all},
        {"precise::log, [½, 2]", logarithm, "r = precise::log(x);", {linear(0.5, 2)}, TRUTH(std::log(x)), ulps(4)},
        {"precise::log2", logarithm, "r = precise::log2(x);", {positive}, TRUTH(std::log2(x)), ulps(4), all},
        {"precise::log2, [½, 2]", logarithm, "r = precise::log2(x);", {linear(0.5, 2)}, TRUTH(std::log2(x)), ulps(4)},
        {"precise::log10", logarithm, "r = precise::log10(x);", {positive}, TRUTH(std::log10(x)), ulps(4), all},
        {"precise::log10, [½, 2]", logarithm, "r = precise::log10(x);", {linear(0.5, 2)}, TRUTH(std::log10(x)), ulps(4)},
        {"precise::pow", "logarithm in two floats, minimax polynomials", "r = precise::pow(x, y);", {logarithmic(1e-30, 1e30), linear(-10, 10)}, TRUTH(std::pow(x, y)), ulps(16), all},
        {"precise::pow, [½, 2]", "logarithm in two floats, minimax polynomials", "r = precise::pow(x, y);", {linear(0.5, 2), linear(-200, 200)}, TRUTH(std::pow(x, y)), ulps(16)},
        {"precise::pow, x < 0", "logarithm in two floats, minimax polynomials", "r = precise::pow(x, y);", {linear(-50, 0), whole(-20, 20)}, TRUTH(std::pow(x, y)), ulps(16)},
        {"precise::powr", "logarithm in two floats, minimax polynomials", "r = precise::powr(x, y);", {logarithmic(1e-10, 1e10), linear(-4, 4)}, TRUTH(powerOfPositive(x, y)), ulps(16), all},
        {"precise::sqrt", "Sqrt", "r = precise::sqrt(x);", {positive}, TRUTH(std::sqrt(x)), rounded(), all},
        {"precise::rsqrt", "quotient, its residual found exactly", "r = precise::rsqrt(x);", {positive}, TRUTH(1 / std::sqrt(x)), rounded(), all},
        {"precise::divide", "quotient", "r = precise::divide(x, y);", {moderate, bothSigns(1e-6, 1e6)}, TRUTH(x / y), rounded(), all},
        {"precise::fmod", "long division of mantissas", "r = precise::fmod(x, y);", {bothSigns(1e-30, 1e30), bothSigns(1e-30, 1e30)}, TRUTH(std::fmod(x, y)), exactly(), all},
        {"precise::fmod, near", "long division of mantissas", "r = precise::fmod(x, y);", {moderate, linear(-3, 3)}, TRUTH(std::fmod(x, y)), exactly()},
        {"precise::fract", "x - floor(x), below 1", "r = precise::fract(x);", {bothSigns(1e-12, 1e9)}, TRUTH(fraction(x, 0x1.fffffep-1L)), rounded(), all},
        {"precise::modf, fraction", "x - trunc(x)", "T w; r = precise::modf(x, w);", {bothSigns(1e-3, 1e9)}, TRUTH(std::isinf(x) ? 0.0L : x - std::trunc(x)), exactly(), all},
        {"precise::modf, whole", "Trunc", "precise::modf(x, r);", {bothSigns(1e-3, 1e9)}, TRUTH(std::trunc(x)), exactly(), all},
    };
    // clang-format on
}

} // namespace tarnwick::trials
