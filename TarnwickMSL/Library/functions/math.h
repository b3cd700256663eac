// Math functions of float in fast math (Metal Shading Language 3.1, 6.5; accuracy: 8.4). The
// device's own instruction where it is as exact as that asks and as quick as arithmetic.
#pragma once

#include "common.h"
#include "fast_core.h"
#include "halves.h"

namespace metal {

#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T sqrt(T x) { return __builtin_elementwise_sqrt(x); }                               \
    MSL_INLINE T rsqrt(T x) { return T(1) / __builtin_elementwise_sqrt(x); }                       \
    MSL_INLINE T sin(T x) { return __builtin_elementwise_sin(x); }                                 \
    MSL_INLINE T cos(T x) { return __builtin_elementwise_cos(x); }                                 \
    MSL_INLINE T tan(T x) { return sin(x) / cos(x); }                                              \
    MSL_INLINE T sincos(T x, T& cosine) {                                                          \
        cosine = cos(x);                                                                           \
        return sin(x);                                                                             \
    }                                                                                              \
    MSL_INLINE T sinpi(T x) { return sin((x - T(2) * rint(x * T(0.5f))) * T(M_PI_F)); }            \
    MSL_INLINE T cospi(T x) { return cos((x - T(2) * rint(x * T(0.5f))) * T(M_PI_F)); }            \
    MSL_INLINE T tanpi(T x) { return tan((x - rint(x)) * T(M_PI_F)); }                             \
    MSL_INLINE T exp(T x) { return _fast::exp2(x * T(M_LOG2E_F)); }                                \
    MSL_INLINE T exp2(T x) { return _fast::exp2(x); }                                              \
    MSL_INLINE T exp10(T x) { return _fast::exp2(x * T(3.32192809f)); }                            \
    MSL_INLINE T log(T x) { return __builtin_elementwise_log(x); }                                 \
    MSL_INLINE T log2(T x) { return __builtin_elementwise_log2(x); }                               \
    MSL_INLINE T log10(T x) { return __builtin_elementwise_log2(x) * T(0.301029996f); }            \
    /* The driver's exponential: what it loses is little beside what the logarithm does. */        \
    MSL_INLINE T powr(T x, T y) { return __builtin_elementwise_exp2(y * log2(x)); }                \
    /* The squares that programs write so, whatever their sign; without a branch. */               \
    MSL_INLINE T pow(T x, T y) {                                                                   \
        T found = powr(x, y);                                                                      \
        return y == T(2) ? x * x : found;                                                          \
    }                                                                                              \
    MSL_INLINE T sinh(T x) {                                                                       \
        T e = exp(x);                                                                              \
        return T(0.5f) * (e - T(1) / e);                                                           \
    }                                                                                              \
    MSL_INLINE T cosh(T x) {                                                                       \
        T e = exp(x);                                                                              \
        return T(0.5f) * (e + T(1) / e);                                                           \
    }                                                                                              \
    MSL_INLINE T tanh(T x) { return T(1) - T(2) / (exp(T(2) * x) + T(1)); }                        \
    MSL_INLINE T asinh(T x) {                                                                      \
        T size = abs(x);                                                                           \
        return copysign(log(size + sqrt(size * size + T(1))), x);                                  \
    }                                                                                              \
    MSL_INLINE T acosh(T x) { return log(x + sqrt(x * x - T(1))); }                                \
    MSL_INLINE T atanh(T x) { return T(0.5f) * log((T(1) + x) / (T(1) - x)); }                     \
    MSL_INLINE T fmod(T x, T y) { return x - y * trunc(x / y); }                                   \
    MSL_INLINE T modf(T x, T& whole) {                                                             \
        whole = trunc(x);                                                                          \
        return x - whole;                                                                          \
    }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY

// Below one also where the difference rounds up to it: compared as integers, which drivers have an
// instruction for, while their minimum of floats looks at each operand for a NaN.
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T fract(T x) {                                                                      \
        I found = __builtin_bit_cast(I, x - floor(x));                                             \
        return __builtin_bit_cast(T, __builtin_elementwise_min(found, I(0x3f7fffff)));             \
    }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY

// Drivers approximate these by less than five units in the last place allow.
#define MSL_BODY(name)                                                                             \
    MSL_INLINE float name(float x) { return _core::name(x); }                                      \
    MSL_LANES_1(float, name, float)
MSL_BODY(asin)
MSL_BODY(acos)
MSL_BODY(atan)
#undef MSL_BODY
MSL_INLINE float atan2(float y, float x) { return _core::atan2(y, x); }
MSL_LANES_2(float, atan2, float, float)

} // namespace metal
