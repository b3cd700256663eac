// Bits of floats, scaling, and sums and products with their rounding errors. In this and the other
// core files every operation rounds once, in the order written.
#pragma once

#include "overloads.h"

#pragma float_control(precise, on, push)
#pragma clang fp contract(off)

namespace metal {
namespace _core {

MSL_INLINE uint bits(float x) {
    return __builtin_bit_cast(uint, x);
}
MSL_INLINE float from_bits(uint x) {
    return __builtin_bit_cast(float, x);
}
MSL_INLINE float absolute(float x) {
    return __builtin_elementwise_abs(x);
}
MSL_INLINE float nearest(float x) {
    return __builtin_elementwise_roundeven(x);
}
MSL_INLINE float with_sign(float x, float sign) {
    return __builtin_elementwise_copysign(x, sign);
}
MSL_INLINE bool is_nan(float x) {
    return x != x;
}

constexpr float infinity = INFINITY;
constexpr float not_a_number = NAN;

// The integer of an integral float; 0 for a NaN, whose conversion is undefined.
MSL_INLINE int whole(float x) {
    return is_nan(x) ? 0 : static_cast<int>(x);
}

// 2^n, n in [-126, 127].
MSL_INLINE float power_of_two(int n) {
    return from_bits(static_cast<uint>(n + 127) << 23);
}
// x * 2^n, n in [-252, 254], rounded once if |x| is in [0.5, 4).
MSL_INLINE float scaled(float x, int n) {
    int part = n >> 1;
    return x * power_of_two(part) * power_of_two(n - part);
}

// A value as the unevaluated sum of two floats.
struct Pair {
    float high, low;
};

// high + low == a + b, exactly.
MSL_INLINE Pair sum(float a, float b) {
    float high = a + b;
    float part = high - a;
    return {high, (a - (high - part)) + (b - part)};
}
// The same for |a| >= |b|.
MSL_INLINE Pair ordered_sum(float a, float b) {
    float high = a + b;
    return {high, b - (high - a)};
}
// high + low == a * b, exactly, without overflow or underflow. Vulkan 1.3 lets Fma round twice, so
// the factors are split into 12 bits instead.
MSL_INLINE Pair product(float a, float b) {
    float a1 = from_bits(bits(a) & 0xfffff000u), a2 = a - a1;
    float b1 = from_bits(bits(b) & 0xfffff000u), b2 = b - b1;
    float high = a * b;
    return {high, ((a1 * b1 - high) + a1 * b2 + a2 * b1) + a2 * b2};
}

// a + b rounded to odd: inexact sums get an odd last bit, so that a second rounding to fewer bits
// is as exact as one.
MSL_INLINE float sum_to_odd(float a, float b) {
    Pair exact = sum(a, b);
    uint given = bits(exact.high);
    bool away = (exact.low > 0.0f) == (exact.high > 0.0f);
    bool inexact = exact.low != 0.0f && (given & 1u) == 0u;
    return from_bits(inexact ? (away ? given + 1u : given - 1u) : given);
}

// a * b + c, rounded once (Boldo and Melquiond, "Emulation of FMA and correctly rounded sums"). The
// factors are scaled into [1, 2) and c with them, so that no step leaves the range.
MSL_INLINE float fused(float a, float b, float c) {
    uint aExponent = bits(a) >> 23 & 0xffu, bExponent = bits(b) >> 23 & 0xffu;
    uint cExponent = bits(c) >> 23 & 0xffu;
    if (aExponent - 1u >= 254u || bExponent - 1u >= 254u)
        return a * b + c; // a zero, a denormal, an infinity or a NaN
    if (cExponent == 255u)
        return c;
    int exponent = static_cast<int>(aExponent + bExponent) - 254;
    int distance = static_cast<int>(cExponent) - 127 - exponent;
    if (distance > 40)
        return c;
    float x = from_bits((bits(a) & 0x807fffffu) | 0x3f800000u);
    float y = from_bits((bits(b) & 0x807fffffu) | 0x3f800000u);
    int reach = distance < -80 ? -80 : distance;
    float z = cExponent == 0u
                  ? 0.0f
                  : from_bits((bits(c) & 0x807fffffu) | static_cast<uint>(reach + 127) << 23);
    Pair xy = product(x, y);
    Pair low = sum(z, xy.low);
    Pair high = sum(xy.high, low.high);
    return scaled(high.high + sum_to_odd(high.low, low.low), exponent);
}

} // namespace _core
} // namespace metal

#pragma float_control(pop)
