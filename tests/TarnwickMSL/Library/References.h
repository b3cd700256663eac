// What the cases' tables are written with.
#pragma once

#include "tests/TarnwickMSL/Library/Cases.h"

#include <algorithm>
#include <cmath>
#include <numbers>

// A captureless function of x, y and z in long double.
#define TRUTH(...)                                                                                 \
    [](long double x, long double y, long double z) -> long double {                               \
        (void)x, (void)y, (void)z;                                                                 \
        return __VA_ARGS__;                                                                        \
    }

namespace tarnwick::trials {

inline constexpr long double pi = std::numbers::pi_v<long double>;

// Trigonometry of half turns, by reduction that is exact.
inline long double sineOfHalfTurns(long double x) {
    const long double r = std::fmod(x, 2.0L);
    return std::floor(r) == r ? std::copysign(0.0L, x) : std::sin(pi * r);
}
inline long double cosineOfHalfTurns(long double x) {
    const long double r = std::abs(std::fmod(x, 2.0L));
    return r == 0.5L || r == 1.5L ? 0.0L : std::cos(pi * r);
}
inline long double tangentOfHalfTurns(long double x) {
    const long double r = std::fmod(x, 1.0L), turn = std::floor(x);
    if (r == 0.5L || r == -0.5L) // +inf from an even number of half turns to the next
        return std::fmod(turn, 2.0L) == 0 ? INFINITY : -INFINITY;
    return std::tan(pi * r);
}
inline long double fraction(long double x, long double most) {
    return std::isinf(x) ? 0.0L : std::isnan(x) ? x : std::min(x - std::floor(x), most);
}
// pow for x >= 0, without the rule that anything to the 0 is 1 (Metal Shading Language 3.1, 6.5).
inline long double powerOfPositive(long double x, long double y) {
    const bool undefined = x < 0 || std::isnan(x) || std::isnan(y) ||
                           ((x == 0 || std::isinf(x)) && y == 0) || (x == 1 && std::isinf(y));
    return undefined ? static_cast<long double>(NAN) : std::pow(std::abs(x), y);
}

} // namespace tarnwick::trials
