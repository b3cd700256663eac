#include "tests/TarnwickMSL/Library/References.h"

#include <algorithm>

namespace tarnwick::trials {

namespace {

long double least(long double a, long double b) {
    return std::fmin(a, b);
}
long double most(long double a, long double b) {
    return std::fmax(a, b);
}
long double middle(long double a, long double b, long double c) {
    return most(least(a, b), least(most(a, b), c));
}
long double away(long double x) {
    return std::round(x);
}
long double signOf(long double x) {
    return x > 0 ? 1 : (x < 0 ? -1 : 0);
}
long double smooth(long double a, long double b, long double x) {
    const long double t = std::clamp((x - a) / (b - a), 0.0L, 1.0L);
    return t * t * (3 - 2 * t);
}
long double exponentOf(long double x) {
    int exponent = 0;
    std::frexp(x, &exponent);
    return exponent;
}
long double mantissaOf(long double x) {
    int exponent = 0;
    return std::isfinite(x) ? std::frexp(x, &exponent) : x;
}
float neighbour(long double x, long double y) {
    return std::nextafter(static_cast<float>(x), static_cast<float>(y));
}
long double fused(long double x, long double y, long double z) {
    return static_cast<long double>(
        std::fma(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)));
}

} // namespace

std::vector<Case> commonCases() {
    const Inputs any = bothSigns(1e-30, 1e30), near = linear(-5, 5), wide = bothSigns(1e-3, 1e9);
    const auto all = Specials::all;
    // clang-format off
    return {
        {"fabs", "FAbs", "r = fabs(x);", {any}, TRUTH(std::abs(x)), exactly(), all},
        {"abs", "FAbs", "r = abs(x);", {any}, TRUTH(std::abs(x)), exactly(), all},
        {"floor", "Floor", "r = floor(x);", {wide}, TRUTH(std::floor(x)), exactly(), all},
        {"ceil", "Ceil", "r = ceil(x);", {wide}, TRUTH(std::ceil(x)), exactly(), all},
        {"trunc", "Trunc", "r = trunc(x);", {wide}, TRUTH(std::trunc(x)), exactly(), all},
        {"rint", "RoundEven", "r = rint(x);", {wide}, TRUTH(std::nearbyint(x)), exactly(), all},
        {"round", "Trunc of x and just under ½", "r = round(x);", {wide}, TRUTH(away(x)), exactly(), all},
        {"round, halves", "Trunc of x and just under ½", "r = round(x * T(0.5f));", {whole(-99, 99)}, TRUTH(away(x / 2)), exactly()},
        {"copysign", "bits", "r = copysign(x, y);", {any, any}, TRUTH(std::copysign(x, y)), exactly()},
        {"fmin", "NMin", "r = fmin(x, y);", {near, near}, TRUTH(least(x, y)), exactly(), all},
        {"fmax", "NMax", "r = fmax(x, y);", {near, near}, TRUTH(most(x, y)), exactly(), all},
        {"min", "NMin", "r = min(x, y);", {any, any}, TRUTH(least(x, y)), exactly(), all},
        {"max", "NMax", "r = max(x, y);", {any, any}, TRUTH(most(x, y)), exactly(), all},
        {"min3", "NMin", "r = min3(x, y, z);", {near, near, near}, TRUTH(least(x, least(y, z))), exactly(), all},
        {"max3", "NMax", "r = max3(x, y, z);", {near, near, near}, TRUTH(most(x, most(y, z))), exactly(), all},
        {"fmin3", "NMin", "r = fmin3(x, y, z);", {near, near, near}, TRUTH(least(x, least(y, z))), exactly(), all},
        {"fmax3", "NMax", "r = fmax3(x, y, z);", {near, near, near}, TRUTH(most(x, most(y, z))), exactly(), all},
        {"median3", "NMin, NMax", "r = median3(x, y, z);", {near, near, near}, TRUTH(middle(x, y, z)), exactly()},
        {"fmedian3", "NMin, NMax", "r = fmedian3(x, y, z);", {near, near, near}, TRUTH(middle(x, y, z)), exactly()},
        {"fdim", "difference", "r = fdim(x, y);", {near, near}, TRUTH(std::fdim(x, y)), rounded(), all},
        {"clamp", "NMin, NMax", "r = clamp(x, y, y + T(2));", {near, near}, TRUTH(least(most(x, y), y + 2)), {"1 rounding of y + 2", 0, 5e-7}},
        {"saturate", "NMin, NMax", "r = saturate(x);", {near}, TRUTH(least(most(x, 0), 1)), exactly(), all},
        {"sign", "selections", "r = sign(x);", {any}, TRUTH(signOf(x)), exactly(), all},
        {"step", "selection", "r = step(x, y);", {near, near}, TRUTH(y < x ? 0.0L : 1.0L), exactly()},
        {"mix", "x + (y - x) a", "r = mix(x, y, z);", {near, near, linear(0, 1)}, TRUTH(x + (y - x) * z), {"3 roundings", 0, 2e-6}},
        {"smoothstep", "t t (3 - 2 t)", "r = smoothstep(x, x + T(1), y);", {linear(0, 1), near}, TRUTH(smooth(x, x + 1, y)), {"its formula's roundings", 0, 1e-6}},
        {"fma", "composed, one rounding", "r = fma(x, y, z);", {any, any, any}, TRUTH(fused(x, y, z)), exactly(), all},
        {"fma, cancelling", "composed, one rounding", "r = fma(x, y, z);", {linear(0.9, 1.1), linear(0.9, 1.1), linear(-1.1, -0.9)}, TRUTH(fused(x, y, z)), exactly()},
        {"frexp, mantissa", "bits", "I e; r = frexp(x, e);", {any}, TRUTH(mantissaOf(x)), exactly(), all},
        {"frexp, exponent", "bits", "I e; frexp(x, e); r = T(e);", {any}, TRUTH(exponentOf(x)), exactly()},
        {"ldexp", "products of powers of two", "r = ldexp(x, I(y));", {near, whole(-160, 160)}, TRUTH(std::ldexp(x, static_cast<int>(y))), rounded()},
        {"ilogb", "bits", "r = T(ilogb(x));", {any}, TRUTH(static_cast<long double>(std::ilogb(x))), exactly()},
        {"nextafter", "bits", "r = nextafter(x, y);", {any, any}, TRUTH(neighbour(x, y)), exactly(), all},
        {"isnan", "comparison", "r = T(isnan(x));", {any}, TRUTH(std::isnan(x) ? 1.0L : 0.0L), exactly(), all},
        {"isinf", "comparison", "r = T(isinf(x));", {any}, TRUTH(std::isinf(x) ? 1.0L : 0.0L), exactly(), all},
        {"isfinite", "comparison", "r = T(isfinite(x));", {any}, TRUTH(std::isfinite(x) ? 1.0L : 0.0L), exactly(), all},
        {"isnormal", "bits", "r = T(isnormal(x));", {any}, TRUTH(std::isnormal(x) ? 1.0L : 0.0L), exactly(), all},
        {"isordered", "comparisons", "r = T(isordered(x, y));", {any, any}, TRUTH(std::isunordered(x, y) ? 0.0L : 1.0L), exactly(), all},
        {"isunordered", "comparisons", "r = T(isunordered(x, y));", {any, any}, TRUTH(std::isunordered(x, y) ? 1.0L : 0.0L), exactly(), all},
        {"signbit", "bits", "r = T(signbit(x));", {any}, TRUTH(std::signbit(x) ? 1.0L : 0.0L), exactly()},
        {"select", "selection", "r = select(x, y, x < y);", {near, near}, TRUTH(x < y ? y : x), exactly()},
        {"max(0, x)", "mixed types", "r = max(0, x);", {near}, TRUTH(most(0, x)), exactly()},
        {"min(x, 1)", "mixed types", "r = min(x, 1);", {near}, TRUTH(least(x, 1)), exactly()},
        {"clamp(x, 0, 1.5)", "mixed types", "r = clamp(x, 0, 1.5);", {near}, TRUTH(least(most(x, 0), 1.5L)), exactly()},
        {"mix(x, 2, 0.5)", "mixed types", "r = mix(x, 2, 0.5);", {near}, TRUTH((x + 2) / 2), {"3 roundings", 0, 1e-6}},
        {"step(0.5, x)", "mixed types", "r = step(0.5, x);", {near}, TRUTH(x < 0.5L ? 0.0L : 1.0L), exactly()},
        {"smoothstep(0, 1.0, x)", "mixed types", "r = smoothstep(0, 1.0, x);", {near}, TRUTH(smooth(0, 1, x)), {"its formula's roundings", 0, 1e-6}},
    };
    // clang-format on
}

std::vector<Case> halfCases() {
    const Inputs every = everyHalf(), near = linear(-5, 5);
    const auto half = Element::half;
    const auto none = Specials::none;
    const char* const viaFloat = "in float";
    std::vector<Case> cases;
    auto add = [&](const char* name,
                   long double (*reference)(long double, long double, long double), Bound bound) {
        cases.push_back({std::string(name) + " (half)",
                         viaFloat,
                         std::string("r = ") + name + "(x);",
                         {every},
                         reference,
                         std::move(bound),
                         none,
                         half});
    };
    // clang-format off
    add("sin", TRUTH(std::sin(x)), ulps(1));
    add("cos", TRUTH(std::cos(x)), ulps(1));
    add("tan", TRUTH(std::tan(x)), ulps(1));
    add("sinpi", TRUTH(std::isinf(x) ? x - x : sineOfHalfTurns(x)), ulps(1));
    add("cospi", TRUTH(std::isinf(x) ? x - x : cosineOfHalfTurns(x)), ulps(1));
    add("asin", TRUTH(std::asin(x)), ulps(1));
    add("acos", TRUTH(std::acos(x)), ulps(1));
    add("atan", TRUTH(std::atan(x)), ulps(1));
    add("sinh", TRUTH(std::sinh(x)), ulps(1));
    add("cosh", TRUTH(std::cosh(x)), ulps(1));
    add("tanh", TRUTH(std::tanh(x)), ulps(1));
    add("asinh", TRUTH(std::asinh(x)), ulps(1));
    add("acosh", TRUTH(std::acosh(x)), ulps(1));
    add("atanh", TRUTH(std::atanh(x)), ulps(1));
    add("exp", TRUTH(std::exp(x)), ulps(1));
    add("exp2", TRUTH(std::exp2(x)), ulps(1));
    add("exp10", TRUTH(std::pow(10.0L, x)), ulps(1));
    add("log", TRUTH(std::log(x)), ulps(1));
    add("log2", TRUTH(std::log2(x)), ulps(1));
    add("log10", TRUTH(std::log10(x)), ulps(1));
    add("sqrt", TRUTH(std::sqrt(x)), rounded());
    add("rsqrt", TRUTH(1 / std::sqrt(x)), ulps(1));
    add("fract", TRUTH(fraction(x, 0x1.ffcp-1L)), rounded());
    add("floor", TRUTH(std::floor(x)), exactly());
    add("ceil", TRUTH(std::ceil(x)), exactly());
    add("trunc", TRUTH(std::trunc(x)), exactly());
    add("rint", TRUTH(std::nearbyint(x)), exactly());
    add("round", TRUTH(std::round(x)), exactly());
    add("saturate", TRUTH(least(most(x, 0), 1)), exactly());
    add("sign", TRUTH(signOf(x)), exactly());
    const std::vector<Case> several = {
        {"tanpi (half)", viaFloat, "r = tanpi(x);", {near}, TRUTH(tangentOfHalfTurns(x)), ulps(1), none, half},
        {"sincos, sine (half)", viaFloat, "T w; r = sincos(x, w);", {near}, TRUTH(std::sin(x)), ulps(1), none, half},
        {"sincos, cosine (half)", viaFloat, "sincos(x, r);", {near}, TRUTH(std::cos(x)), ulps(1), none, half},
        {"modf, fraction (half)", viaFloat, "T w; r = modf(x, w);", {bothSigns(1e-3, 6e4)}, TRUTH(x - std::trunc(x)), exactly(), none, half},
        {"modf, whole (half)", viaFloat, "modf(x, r);", {bothSigns(1e-3, 6e4)}, TRUTH(std::trunc(x)), exactly(), none, half},
        {"divide (half)", "quotient", "r = divide(x, y);", {near, bothSigns(1e-2, 1e2)}, TRUTH(x / y), ulps(1), none, half},
        {"pow (half)", viaFloat, "r = pow(x, y);", {logarithmic(1e-4, 1e4), near}, TRUTH(std::pow(x, y)), ulps(1), Specials::all, half},
        {"powr (half)", viaFloat, "r = powr(x, y);", {logarithmic(1e-4, 1e4), near}, TRUTH(powerOfPositive(x, y)), ulps(1), Specials::all, half},
        {"atan2 (half)", viaFloat, "r = atan2(x, y);", {near, near}, TRUTH(std::atan2(x, y)), ulps(1), Specials::all, half},
        {"fmod (half)", viaFloat, "r = fmod(x, y);", {bothSigns(1e-3, 6e4), bothSigns(1e-3, 6e4)}, TRUTH(std::fmod(x, y)), exactly(), Specials::all, half},
        {"fma (half)", "in float, rounded to odd", "r = fma(x, y, z);", {near, near, near}, TRUTH(x * y + z), rounded(), Specials::all, half},
        {"max(x, 0.5) (half)", "mixed types", "r = T(max(x, 0.5));", {near}, TRUTH(most(x, 0.5L)), exactly(), none, half},
        {"clamp(x, 0.0, 1) (half)", "mixed types", "r = T(clamp(x, 0.0, 1));", {near}, TRUTH(least(most(x, 0), 1)), exactly(), none, half},
        {"mix (half)", "x + (y - x) a", "r = mix(x, y, z);", {near, near, linear(0, 1)}, TRUTH(x + (y - x) * z), {"3 roundings", 0, 0.02}, none, half},
    };
    // clang-format on
    cases.insert(cases.end(), several.begin(), several.end());
    return cases;
}

} // namespace tarnwick::trials
