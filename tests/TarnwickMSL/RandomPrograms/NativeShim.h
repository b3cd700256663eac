// What a random program uses of Metal's language, for the native compiler.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace tarnwick::trials::native {

using uint = std::uint32_t;

using std::ceil;
using std::floor;
using std::rint;
using std::round;
using std::trunc;

inline int abs(int value) {
    return value < 0 ? -value : value;
}
inline float abs(float value) {
    return std::fabs(value);
}
inline float fract(float value) {
    return value - std::floor(value);
}
inline uint popcount(uint value) {
    return static_cast<uint>(std::popcount(value));
}

template <class T> T min(T a, T b) {
    return b < a ? b : a;
}
template <class T> T max(T a, T b) {
    return a < b ? b : a;
}
template <class T> T clamp(T value, T low, T high) {
    return min(max(value, low), high);
}

} // namespace tarnwick::trials::native

#include "tests/TarnwickMSL/RandomPrograms/NativeVectors.h"

// Metal's address spaces; no standard header may come after this one.
#define thread
#define constant const
