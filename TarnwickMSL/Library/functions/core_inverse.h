// Inverse circular functions of one float. Unlike in the other core files the device may contract
// and use reciprocals, as in fast math: no step depends on exact rounding.
#pragma once

#include "core_scaling.h"

namespace metal {
namespace _core {

// asin(x) for |x| <= 0.5: 2^-31.
MSL_INLINE float asin_near_zero(float x) {
    float s = x * x;
    float p = 3.757676855e-2f;
    p = p * s + 1.439121924e-2f;
    p = p * s + 3.182182461e-2f;
    p = p * s + 4.451499507e-2f;
    p = p * s + 7.500516623e-2f;
    p = p * s + 0.1666665971f;
    return x + x * (s * p);
}
MSL_INLINE float asin(float x) {
    float size = absolute(x);
    bool large = size > 0.5f;
    float t = large ? __builtin_elementwise_sqrt(0.5f * (1.0f - size)) : size;
    float found = asin_near_zero(t);
    found = large ? 1.57079633f - (2.0f * found + 4.37113883e-8f) : found;
    return with_sign(found, x);
}
MSL_INLINE float acos(float x) {
    float size = absolute(x);
    bool large = size > 0.5f;
    float t = large ? __builtin_elementwise_sqrt(0.5f * (1.0f - size)) : x;
    float found = asin_near_zero(t);
    float wide = 2.0f * found;
    float near = x < 0.0f ? 3.14159274f - (wide + 8.74227766e-8f) : wide;
    return large ? near : 1.57079633f - (found + 4.37113883e-8f);
}

// atan(x) for |x| <= 1: 2^-28.
MSL_INLINE float atan_to_one(float x) {
    float s = x * x;
    float p = -1.791501999e-3f;
    p = p * s + 1.090453658e-2f;
    p = p * s + -3.115776554e-2f;
    p = p * s + 5.793580040e-2f;
    p = p * s + -8.402056247e-2f;
    p = p * s + 0.1095165461f;
    p = p * s + -0.1426412612f;
    p = p * s + 0.1999853551f;
    p = p * s + -0.3333329856f;
    return x + x * (s * p);
}
MSL_INLINE float atan(float x) {
    float size = absolute(x);
    bool large = size > 1.0f;
    float found = atan_to_one(large ? 1.0f / size : size);
    found = large ? 1.57079633f - (found + 4.37113883e-8f) : found;
    return with_sign(found, x);
}
MSL_INLINE float atan2(float y, float x) {
    float across = absolute(x), up = absolute(y);
    bool steep = up > across;
    float larger = steep ? up : across, smaller = steep ? across : up;
    float ratio = smaller / larger;
    ratio = larger == 0.0f ? 0.0f : (smaller == infinity ? 1.0f : ratio);
    float found = atan_to_one(ratio);
    found = steep ? 1.57079633f - (found + 4.37113883e-8f) : found;
    bool left = (bits(x) >> 31) != 0u;
    found = left ? 3.14159274f - (found + 8.74227766e-8f) : found;
    found = is_nan(x) || is_nan(y) ? not_a_number : found;
    return with_sign(found, y);
}

} // namespace _core
} // namespace metal
