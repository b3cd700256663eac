#include "tests/TarnwickMSL/Accuracy/Judge.h"

#include <algorithm>
#include <bit>
#include <cmath>

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define VECTORISED __attribute__((target_clones("default", "avx2")))
#else
#define VECTORISED
#endif

namespace tarnwick::trials {

namespace {

constexpr std::size_t block = 1024;
constexpr double leastNormal = 0x1p-126,
                 beyond = 0x1p128; // the next number after the largest float

float floatOf(std::uint32_t bits) {
    return std::bit_cast<float>(bits);
}

// Infinities and numbers beyond float's become 2^128, so that an overflow has an error too.
inline double withinFloats(double x) {
    x = x > beyond ? beyond : x;
    return x < -beyond ? -beyond : x;
}

// Doubles without a sign compare like their bits. The compiler vectorises the maximum of integers.
inline std::int64_t bitsOf(double size) {
    return std::bit_cast<std::int64_t>(size);
}

// The bits of |got - wanted|; of infinity if only one of the two is a NaN.
inline std::int64_t errorBits(double got, double wanted) {
    const double g = withinFloats(got), w = withinFloats(wanted);
    const std::int64_t error = bitsOf(std::fabs(g - w)), infinite = bitsOf(HUGE_VAL);
    const std::int64_t ofNaN = (g != g ? infinite : 0) & (w != w ? infinite : 0);
    return error > infinite ? infinite - ofNaN : error;
}

// The error in units in the last place of the float `wanted`.
inline double inUnits(std::int64_t errorBits, double wanted) {
    std::int64_t bits = bitsOf(std::fabs(withinFloats(wanted)));
    bits = bits < bitsOf(leastNormal) ? bitsOf(leastNormal) : bits;
    bits = bits > bitsOf(0x1p127) ? bitsOf(0x1p127) : bits;
    // Without a sign: AVX2 has no other shift of 64 bits to the right.
    const std::uint64_t exponent = static_cast<std::uint64_t>(bits) >> 52;
    return std::bit_cast<double>(errorBits) *
           std::bit_cast<double>((2 * 1023 + 23 - exponent) << 52);
}

// The largest errors of a block. The compiler vectorises it in this form: a free function that
// returns nothing.
VECTORISED void findLargest(const float* results, const double* wanted, double& absolute,
                            double& ulps) {
    std::int64_t largest = 0, largestUnits = 0;
    for (std::size_t i = 0; i < block; i++) {
        const double w = wanted[i];
        const std::int64_t error = errorBits(static_cast<double>(results[i]), w);
        const std::int64_t units = bitsOf(inUnits(error, w));
        largest = error > largest ? error : largest;
        largestUnits = units > largestUnits ? units : largestUnits;
    }
    absolute = std::bit_cast<double>(largest);
    ulps = std::bit_cast<double>(largestUnits);
}

} // namespace

struct Judge::Errors {
    double ulps = 0, absolute = 0;
};

Judge::Errors Judge::errorsOf(float got, double wanted) {
    const std::int64_t error = errorBits(static_cast<double>(got), wanted);
    return {inUnits(error, wanted), std::bit_cast<double>(error)};
}

Judge::Errors Judge::largest(const float* results, const double* wanted) {
    Errors found;
    findLargest(results, wanted, found.absolute, found.ulps);
    return found;
}

Judge::Judge(const Sweep& sweep)
    : sweep_(sweep), isAbsolute_(sweep.row.bound.absolute > 0 && sweep.row.bound.ulps == 0) {}

bool Judge::isCovered(float x) const {
    return sweep_.hasSpecials || (x >= sweep_.low && x <= sweep_.high);
}

double Judge::allowed(float x, double wanted) const {
    const Bound& bound = sweep_.row.bound;
    return bound.absolute +
           (bound.further ? bound.further(static_cast<double>(x), 0, wanted) : 0.0);
}

// Whether the largest errors of a block from x to y are within the bound of each of its arguments.
bool Judge::isWithin(const Errors& errors, float x, float y, double wanted,
                     double wantedOfY) const {
    if (errors.ulps <= sweep_.row.bound.ulps * 1.000001)
        return true;
    // Formulas of bounds change little in a block.
    return errors.absolute <= 0.98 * std::min(allowed(x, wanted), allowed(y, wantedOfY));
}

// Whether a denormal argument or result was taken for zero.
bool Judge::isFlushed(float x, float got, double wanted) const {
    if (std::fabs(wanted) < leastNormal && std::fabs(static_cast<double>(got)) <= leastNormal)
        return got == 0 || std::fabs(static_cast<double>(got)) == leastNormal;
    if (x == 0 || std::fabs(static_cast<double>(x)) >= leastNormal)
        return false;
    const auto ofZero = static_cast<double>(
        sweep_.row.reference(std::copysign(0.0L, static_cast<long double>(x)), 0, 0));
    const Errors errors = errorsOf(got, ofZero);
    return errors.ulps <= sweep_.row.bound.ulps || errors.absolute <= allowed(0, ofZero);
}

void Judge::addOne(float x, float got, double wanted) {
    const Errors errors = errorsOf(got, wanted);
    const bool holds = errors.ulps <= sweep_.row.bound.ulps * 1.000001 ||
                       errors.absolute <= sweep_.row.bound.ulps * errors.absolute / errors.ulps +
                                              allowed(x, wanted);
    if (!holds && !isFlushed(x, got, wanted) && misses_++ == 0)
        firstMiss_ = x;
    const double size = std::fabs(wanted), error = isAbsolute_ ? errors.absolute : errors.ulps;
    const bool isNormal = std::fabs(static_cast<double>(x)) >= leastNormal && size >= leastNormal &&
                          size < beyond && std::isfinite(got);
    if (isNormal && error > worst_) {
        worst_ = error;
        worstAt_ = x;
    }
}

void Judge::add(std::uint32_t first, std::span<const float> results,
                std::span<const double> wanted) {
    for (std::size_t at = 0; at < results.size(); at += block) {
        const auto bits = first + static_cast<std::uint32_t>(at);
        const float x = floatOf(bits), y = floatOf(bits + block - 1);
        const bool isInside = isCovered(x) && isCovered(y);
        const bool isOutside = !sweep_.hasSpecials && (std::max(x, y) < sweep_.low ||
                                                       std::min(x, y) > sweep_.high || y != y);
        if (isOutside)
            continue;
        const Errors errors = largest(&results[at], &wanted[at]);
        const double error = isAbsolute_ ? errors.absolute : errors.ulps;
        if (isInside && error <= worst_ &&
            isWithin(errors, x, y, wanted[at], wanted[at + block - 1]))
            continue;
        for (std::size_t i = at; i < at + block; i++)
            if (const float argument = floatOf(first + static_cast<std::uint32_t>(i));
                isCovered(argument))
                addOne(argument, results[i], wanted[i]);
    }
}

} // namespace tarnwick::trials
