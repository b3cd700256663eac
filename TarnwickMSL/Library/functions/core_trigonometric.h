// Circular functions of one float.
#pragma once

#include "core_scaling.h"

#pragma float_control(precise, on, push)
#pragma clang fp contract(off)

namespace metal {
namespace _core {

// An angle minus the nearest multiple of pi/2, and that multiple modulo 4 (in the low two bits).
struct Reduced {
    float angle; // about [-pi/4, pi/4]
    int quarter;
};

// The fraction of 2/pi in binary, after one word of zeros.
constexpr uint two_over_pi[8] = {0u,          0xa2f9836eu, 0x4e441529u, 0xfc2757d1u,
                                 0xf534ddc0u, 0xdb629599u, 0x3c439041u, 0xfe5163abu};

// For |x| above 2^13: the product with the bits of 2/pi that matter modulo 4 (Payne and Hanek).
MSL_INLINE Reduced reduced_far(float x) {
    uint given = bits(x) & 0x7fffffffu;
    uint mantissa = (given & 0x007fffffu) | 0x00800000u;
    uint offset = (given >> 23) - 150u + 30u; // bits of weight 4 or more are dropped
    uint word = offset >> 5, shift = offset & 31u;
    word = word > 4u ? 4u : word; // infinities and NaNs; their result is set below
    ulong w01 = static_cast<ulong>(two_over_pi[word]) << 32 | two_over_pi[word + 1u];
    ulong w23 = static_cast<ulong>(two_over_pi[word + 2u]) << 32 | two_over_pi[word + 3u];
    uint top = static_cast<uint>((w01 << shift) >> 32);
    uint middle = static_cast<uint>((((w01 & 0xffffffffu) << 32 | w23 >> 32) << shift) >> 32);
    uint bottom = static_cast<uint>((w23 << shift) >> 32);
    ulong low = static_cast<ulong>(mantissa) * bottom;
    ulong next = static_cast<ulong>(mantissa) * middle + (low >> 32);
    uint high = mantissa * top + static_cast<uint>(next >> 32);
    // high.next is the angle in quarters modulo 4, two bits before its binary point.
    ulong fraction = (static_cast<ulong>(high) << 32 | (next & 0xffffffffu)) << 2;
    int quarter = static_cast<int>(high >> 30);
    bool past = (fraction >> 63) != 0u;
    ulong size = past ? 0ul - fraction : fraction;
    float angle = static_cast<float>(size) * 0x1p-64f * 1.57079633f;
    bool negative = x < 0.0f;
    quarter += past ? 1 : 0;
    bool turn = past != negative;
    return {turn ? -angle : angle, negative ? -quarter : quarter};
}

MSL_INLINE Reduced reduced(float x) {
    float size = absolute(x);
    if (size < 12000.0f) {
        // pi/2 in pieces of 11 bits, so that their products with n are exact.
        float n = nearest(x * 0.636619772f);
        float r = ((x - n * 1.5703125f) - n * 4.837512969970703125e-4f);
        r = (r - n * 7.54953362e-8f) - n * 2.56334407e-12f;
        return {r, static_cast<int>(n)};
    }
    if (!(size < infinity))
        return {not_a_number, 0};
    return reduced_far(x);
}

// sin and cos for |x| <= pi/4: 2^-28 and 2^-33.
MSL_INLINE float sin_near_zero(float x) {
    float s = x * x;
    float p = -1.951845479e-4f;
    p = p * s + 8.332190104e-3f;
    p = p * s + -0.1666665524f;
    return x + x * (s * p);
}
MSL_INLINE float cos_near_zero(float x) {
    float s = x * x;
    float p = 2.443256744e-5f;
    p = p * s + -1.388731063e-3f;
    p = p * s + 4.166664556e-2f;
    return 1.0f - (0.5f * s - s * (s * p));
}

// The sine of `quarter` quarter turns plus an angle with sine `s` and cosine `c`.
MSL_INLINE float turned(float s, float c, int quarter) {
    float found = (quarter & 1) != 0 ? c : s;
    return (quarter & 2) != 0 ? -found : found;
}
MSL_INLINE float sin(float x) {
    Reduced r = reduced(x);
    float found = turned(sin_near_zero(r.angle), cos_near_zero(r.angle), r.quarter);
    return x == 0.0f ? x : found;
}
MSL_INLINE float cos(float x) {
    Reduced r = reduced(x);
    return turned(sin_near_zero(r.angle), cos_near_zero(r.angle), r.quarter + 1);
}
MSL_INLINE float sincos(float x, float& cosine) {
    Reduced r = reduced(x);
    float s = sin_near_zero(r.angle), c = cos_near_zero(r.angle);
    cosine = turned(s, c, r.quarter + 1);
    return x == 0.0f ? x : turned(s, c, r.quarter);
}
MSL_INLINE float tan(float x) {
    Reduced r = reduced(x);
    float s = sin_near_zero(r.angle), c = cos_near_zero(r.angle);
    bool odd = (r.quarter & 1) != 0;
    return x == 0.0f ? x : (odd ? -c : s) / (odd ? s : c);
}

// Half turns minus the nearest multiple of 1/2; exact.
MSL_INLINE Reduced reduced_half_turns(float x) {
    float size = absolute(x);
    if (!(size < infinity))
        return {not_a_number, 0};
    float n = nearest(2.0f * (size - 2.0f * __builtin_elementwise_floor(0.5f * size)));
    float rest = (size - 2.0f * __builtin_elementwise_floor(0.5f * size)) - 0.5f * n;
    bool negative = x < 0.0f;
    int quarter = static_cast<int>(n);
    return {negative ? -rest : rest, negative ? -quarter : quarter};
}
// sin(pi x) and cos(pi x) for |x| <= 1/4: 2^-33 and 2^-30.
MSL_INLINE float sinpi_near_zero(float x) {
    float s = x * x;
    float p = 7.977344841e-2f;
    p = p * s + -0.5990419388f;
    p = p * s + 2.550156116f;
    p = p * s + -5.167712688f;
    return x * 3.14159274f + x * (s * p - 8.74227800e-8f);
}
MSL_INLINE float cospi_near_zero(float x) {
    float s = x * x;
    float p = 0.2297452241f;
    p = p * s + -1.334835887f;
    p = p * s + 4.058698654f;
    p = p * s + -4.934802055f;
    return 1.0f + s * p;
}
MSL_INLINE float sinpi(float x) {
    Reduced r = reduced_half_turns(x);
    float found = turned(sinpi_near_zero(r.angle), cospi_near_zero(r.angle), r.quarter);
    return found == 0.0f ? with_sign(0.0f, x) : found;
}
MSL_INLINE float cospi(float x) {
    Reduced r = reduced_half_turns(x);
    return turned(sinpi_near_zero(r.angle), cospi_near_zero(r.angle), r.quarter + 1);
}
MSL_INLINE float tanpi(float x) {
    Reduced r = reduced_half_turns(x);
    float s = sinpi_near_zero(r.angle), c = cospi_near_zero(r.angle);
    bool odd = (r.quarter & 1) != 0;
    float found = (odd ? -c : s) / (odd ? s : c);
    found = odd && s == 0.0f ? ((r.quarter & 2) != 0 ? -infinity : infinity) : found;
    return x == 0.0f ? x : found;
}

} // namespace _core
} // namespace metal

#pragma float_control(pop)
