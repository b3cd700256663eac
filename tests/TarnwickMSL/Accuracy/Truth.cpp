#include "tests/TarnwickMSL/Accuracy/Truth.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

// Two builds of each loop: one for any processor, one with vectors of four doubles.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define VECTORISED __attribute__((target_clones("default", "avx2")))
#else
#define VECTORISED
#endif

namespace tarnwick::trials {

namespace {

constexpr double pi = std::numbers::pi;

std::uint32_t bitsOf(double x) {
    return std::bit_cast<std::uint32_t>(static_cast<float>(x));
}

// Half turns as quarter turns and the rest, exact for floats: |rest| <= 1/4.
double quarterOf(double x) {
    return std::rint(2 * x);
}
double restOf(double x) {
    return x - quarterOf(x) / 2;
}
bool isOdd(double quarter) {
    return std::rint(quarter / 2) != quarter / 2;
}
// -1 for quarters 2 and 3 of four, otherwise 1.
double signOf(double quarter) {
    const double whole = std::floor(quarter / 2);
    return std::floor(whole / 2) * 2 == whole ? 1 : -1;
}

// At the poles of tanpi, beyond all floats: the loops may not make infinities.
double poleOf(double x) {
    return signOf(quarterOf(x)) * 1e300;
}

// Beyond it the result is beyond all floats, and the vector functions are slow.
double limited(double x, double limit) {
    return std::min(std::max(x, -limit), limit);
}

#define FOR_EACH_TRUTH(M)                                                                          \
    M(sin, std::sin(v))                                                                            \
    M(cos, std::cos(v))                                                                            \
    M(tan, std::tan(v))                                                                            \
    M(sinpi, signOf(quarterOf(v)) *                                                                \
                 (isOdd(quarterOf(v)) ? std::cos(pi * restOf(v)) : std::sin(pi * restOf(v))))      \
    M(cospi, signOf(quarterOf(v) + 1) *                                                            \
                 (isOdd(quarterOf(v)) ? std::sin(pi * restOf(v)) : std::cos(pi * restOf(v))))      \
    M(tanpi, !isOdd(quarterOf(v)) ? std::tan(pi * restOf(v))                                       \
                                  : (restOf(v) == 0 ? poleOf(v) : -1 / std::tan(pi * restOf(v))))  \
    M(asin, std::asin(v))                                                                          \
    M(acos, std::acos(v))                                                                          \
    M(atan, std::atan(v))                                                                          \
    M(sinh, std::sinh(limited(v, 700)))                                                            \
    M(cosh, std::cosh(limited(v, 700)))                                                            \
    M(tanh, std::tanh(limited(v, 700)))                                                            \
    M(asinh, std::asinh(v))                                                                        \
    M(acosh, std::acosh(v))                                                                        \
    M(atanh, std::atanh(v))                                                                        \
    M(exp, std::exp(limited(v, 700)))                                                              \
    M(exp2, std::exp2(limited(v, 900)))                                                            \
    M(exp10, ::exp10(limited(v, 300)))                                                             \
    M(log, std::log(v))                                                                            \
    M(log2, std::log2(v))                                                                          \
    M(log10, std::log10(v))                                                                        \
    M(sqrt, std::sqrt(v))                                                                          \
    M(rsqrt, 1 / std::sqrt(v))                                                                     \
    M(reciprocal, 1 / v)                                                                           \
    M(fabs, std::fabs(v))                                                                          \
    M(floor, std::floor(v))                                                                        \
    M(ceil, std::ceil(v))                                                                          \
    M(trunc, std::trunc(v))                                                                        \
    M(rint, std::rint(v))                                                                          \
    M(round, std::copysign(std::floor(std::fabs(v) + 0.5), v))                                     \
    M(fract, std::min(v - std::floor(v), 0x1.fffffep-1))                                           \
    M(modfFraction, v - std::trunc(v))                                                             \
    M(saturate, std::min(std::max(v, 0.0), 1.0))                                                   \
    M(sign, v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0))                                                    \
    M(signbit, (bitsOf(v) >> 31) != 0 ? 1.0 : 0.0)                                                 \
    M(isnormal, (bitsOf(v) >> 23 & 255) != 0 ? 1.0 : 0.0)                                          \
    M(zero, v * 0)                                                                                 \
    M(one, v * 0 + 1)

#define LOOP(name, ...)                                                                            \
    VECTORISED void name##Truth(const float* x, double* result, std::size_t count) {               \
        for (std::size_t i = 0; i < count; i++) {                                                  \
            const double v = static_cast<double>(x[i]);                                            \
            result[i] = __VA_ARGS__;                                                               \
        }                                                                                          \
    }
FOR_EACH_TRUTH(LOOP)

void mantissaTruth(const float* x, double* result, std::size_t count) {
    int exponent = 0;
    for (std::size_t i = 0; i < count; i++)
        result[i] = std::frexp(static_cast<double>(x[i]), &exponent);
}
void exponentTruth(const float* x, double* result, std::size_t count) {
    int exponent = 0;
    for (std::size_t i = 0; i < count; i++) {
        std::frexp(static_cast<double>(x[i]), &exponent);
        result[i] = exponent;
    }
}
void ilogbTruth(const float* x, double* result, std::size_t count) {
    for (std::size_t i = 0; i < count; i++)
        result[i] = static_cast<double>(static_cast<float>(std::ilogb(x[i])));
}

} // namespace

Truth truthOf(std::string_view name) {
#define ROW(name, ...) std::pair<std::string_view, Truth>{#name, name##Truth},
    static constexpr std::array rows{FOR_EACH_TRUTH(ROW) ROW(mantissa) ROW(exponent) ROW(ilogb)};
    const auto found = std::ranges::find(rows, name, &std::pair<std::string_view, Truth>::first);
    return found == rows.end() ? nullptr : found->second;
}

} // namespace tarnwick::trials
