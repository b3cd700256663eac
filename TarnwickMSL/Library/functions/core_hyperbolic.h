// Hyperbolic functions of one float and their inverses.
#pragma once

#include "core_exponential.h"

#pragma float_control(precise, on, push)
#pragma clang fp contract(off)

namespace metal {
namespace _core {

// e^x / 2 and e^-x / 2 for x in [0, 90], without overflow.
MSL_INLINE Pair half_exponentials(float x) {
    Scaled up = exp_parts(x < 90.0f ? x : 90.0f);
    return {scaled(up.mantissa, up.exponent - 1), scaled(1.0f / up.mantissa, -up.exponent - 1)};
}
MSL_INLINE float sinh(float x) {
    float size = absolute(x);
    Pair halves = half_exponentials(size);
    float found = size > 89.5f ? infinity : halves.high - halves.low;
    float s = size * size; // to 1: 2^-31
    float p = 2.789983910e-6f;
    p = p * s + 1.984166593e-4f;
    p = p * s + 8.333315142e-3f;
    p = p * s + 0.1666666716f;
    float near = size + size * (s * p);
    return is_nan(x) ? x : with_sign(size < 1.0f ? near : found, x);
}
MSL_INLINE float cosh(float x) {
    float size = absolute(x);
    Pair halves = half_exponentials(size);
    return is_nan(x) ? x : (size > 89.5f ? infinity : halves.high + halves.low);
}
MSL_INLINE float tanh(float x) {
    float size = absolute(x);
    Scaled parts = exp_parts(2.0f * (size < 20.0f ? size : 20.0f));
    float found = 1.0f - 2.0f / (scaled(parts.mantissa, parts.exponent) + 1.0f);
    float s = size * size; // to 0.625: 2^-32
    float p = 2.157055773e-3f;
    p = p * s + -8.194557391e-3f;
    p = p * s + 2.170859277e-2f;
    p = p * s + -5.394844711e-2f;
    p = p * s + 0.1333322227f;
    p = p * s + -0.3333333135f;
    float near = size + size * (s * p);
    return is_nan(x) ? x : with_sign(size < 0.625f ? near : found, x);
}

MSL_INLINE float asinh(float x) {
    float size = absolute(x);
    float square = size * size;
    // x + sqrt(x x + 1) - 1, and 2 x beyond 2^12.
    float found = log1p(size + square / (1.0f + __builtin_elementwise_sqrt(square + 1.0f)));
    found = size > 4096.0f ? log(size) + 0.693147181f : found;
    found = size < 0x1p-12f ? size : found;
    return with_sign(found, x);
}
MSL_INLINE float acosh(float x) {
    float t = x - 1.0f;
    float found = log1p(t + __builtin_elementwise_sqrt(2.0f * t + t * t));
    found = x > 4096.0f ? log(x) + 0.693147181f : found;
    return x < 1.0f ? not_a_number : found;
}
MSL_INLINE float atanh(float x) {
    float size = absolute(x);
    float found = 0.5f * log1p(2.0f * size / (1.0f - size));
    float s = size * size; // to 0.5: 2^-33
    float p = 0.1791220009f;
    p = p * s + 2.163675241e-2f;
    p = p * s + 0.1038628072f;
    p = p * s + 0.1094857305f;
    p = p * s + 0.1429658681f;
    p = p * s + 0.1999965012f;
    p = p * s + 0.3333333731f;
    float near = size + size * (s * p);
    found = size == 1.0f ? infinity : found;
    return size > 1.0f ? not_a_number : with_sign(size < 0.5f ? near : found, x);
}

} // namespace _core
} // namespace metal

#pragma float_control(pop)
