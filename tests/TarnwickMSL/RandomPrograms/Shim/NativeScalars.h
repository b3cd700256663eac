// Metal's numbers and their functions for the native compiler.
#pragma once

#include "tests/TarnwickMSL/RandomPrograms/Shim/NativeFunctions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace tarnwick::trials::native {

using uchar = std::uint8_t;
using ushort = std::uint16_t;
using uint = std::uint32_t;
using ulong = std::uint64_t;
using half = _Float16;

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
#define OF_HALF(name)                                                                              \
    inline half name(half value) {                                                                 \
        return static_cast<half>(name(static_cast<float>(value)));                                 \
    }
OF_HALF(abs)
OF_HALF(fract)
OF_HALF(ceil)
OF_HALF(floor)
OF_HALF(rint)
OF_HALF(round)
OF_HALF(trunc)
#undef OF_HALF
using std::copysign;
using std::fma;
using std::ldexp;
inline float sign(float value) {
    return value > 0 ? 1.0f : (value < 0 ? -1.0f : 0.0f);
}
inline float step(float edge, float value) {
    return value < edge ? 0.0f : 1.0f;
}
inline float saturate(float value) {
    return value < 0 ? 0.0f : (value > 1 ? 1.0f : value);
}
inline float mix(float a, float b, float t) {
    return a + (b - a) * t;
}

// Vectors and their swizzles have their own.
template <class T>
concept Number = requires(T value) {
    static_cast<double>(value);
};
template <Number T> T min(T a, T b) {
    return b < a ? b : a;
}
template <Number T> T max(T a, T b) {
    return a < b ? b : a;
}
template <Number T> T clamp(T value, T low, T high) {
    return min(max(value, low), high);
}

template <Number T> T select(T no, T yes, bool which) {
    return which ? yes : no;
}

} // namespace tarnwick::trials::native
