// What a random program uses of Metal's language, for the native compiler.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>

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
inline uint popcount(uint value) {
    return static_cast<uint>(std::popcount(value));
}

inline uint clz(uint value) {
    return static_cast<uint>(std::countl_zero(value));
}
inline uint ctz(uint value) {
    return static_cast<uint>(std::countr_zero(value));
}
inline uint reverse_bits(uint value) {
    uint reversed = 0;
    for (uint bit = 0; bit < 32; bit++)
        reversed |= (value >> bit & 1) << (31 - bit);
    return reversed;
}
inline uint rotate(uint value, uint by) {
    return std::rotl(value, static_cast<int>(by & 31));
}
// The field of `count` bits from `offset`, both together at most 32.
inline uint extract_bits(uint value, uint offset, uint count) {
    return static_cast<uint>(ulong{value} >> offset & ((ulong{1} << count) - 1));
}
inline uint insert_bits(uint value, uint inserted, uint offset, uint count) {
    const auto mask = static_cast<uint>(((ulong{1} << count) - 1) << offset);
    return (value & ~mask) | (inserted << offset & mask);
}
inline uint mulhi(uint a, uint b) {
    return static_cast<uint>(ulong{a} * b >> 32);
}
inline uint absdiff(uint a, uint b) {
    return a < b ? b - a : a - b;
}
inline uint addsat(uint a, uint b) {
    return a > ~b ? ~0u : a + b;
}
inline uint subsat(uint a, uint b) {
    return a < b ? 0 : a - b;
}
inline uint hadd(uint a, uint b) {
    return static_cast<uint>((ulong{a} + b) >> 1);
}
inline uint rhadd(uint a, uint b) {
    return static_cast<uint>((ulong{a} + b + 1) >> 1);
}
template <class T, class From> T as_type(From value) {
    return std::bit_cast<T>(value);
}

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
concept Number = requires(T value) { static_cast<double>(value); };
template <Number T> T min(T a, T b) {
    return b < a ? b : a;
}
template <Number T> T max(T a, T b) {
    return a < b ? b : a;
}
template <Number T> T clamp(T value, T low, T high) {
    return min(max(value, low), high);
}

} // namespace tarnwick::trials::native

#include "tests/TarnwickMSL/RandomPrograms/NativeVectors.h"

// Metal's address spaces; no standard header may come after this one.
#define thread
#define constant const
