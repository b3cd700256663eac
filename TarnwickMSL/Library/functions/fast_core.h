// Exponentials and circular functions of float in fast math. Drivers have instructions for these,
// but the packaged CPU driver's exp2 goes past the bound near 0 (3.2 units for 3), and its sin is no
// quicker than this. The polynomials are summed as trees: in a marching loop each step waits for the
// one before.
#pragma once

#include "common.h"

namespace metal {
namespace _fast {

MSL_INLINE int whole(float x) { return static_cast<int>(x); }
MSL_INLINE int2 whole(float2 x) { return __builtin_convertvector(x, int2); }
MSL_INLINE int3 whole(float3 x) { return __builtin_convertvector(x, int3); }
MSL_INLINE int4 whole(float4 x) { return __builtin_convertvector(x, int4); }

// x less n times pi, in pieces of pi: the products with the first two are exact up to n = 2^20, with
// the third up to 2^13. These steps must be as written.
#pragma float_control(precise, on, push)
#pragma clang fp contract(off)
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T less_turns(T x, T n) {                                                            \
        x = (x - n * T(3.0f)) - n * T(0.140625f);                                                  \
        return x - (n * T(9.67502594e-4f) + n * T(1.509958025e-7f));                               \
    }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY
#pragma float_control(pop)

#define MSL_BODY(T, I, B)                                                                          \
    /* sin(x) for |x| <= pi/2 (2^-27), negated where n is odd. Far angles, whose reduction has */  \
    /* lost its meaning, still give values of [-1, 1]. */                                          \
    MSL_INLINE T sin_signed(T x, I n) {                                                            \
        x = x > T(1.58f) ? T(1.58f) : x;                                                           \
        x = x < T(-1.58f) ? T(-1.58f) : x;                                                         \
        T s = x * x;                                                                               \
        T p = (T(-0.1666665971f) + T(8.333069272e-3f) * s) +                                       \
              (T(-1.980977977e-4f) + T(2.606109774e-6f) * s) * (s * s);                            \
        p = x + (x * s) * p;                                                                       \
        return __builtin_bit_cast(T, __builtin_bit_cast(I, p) ^ (n << 31));                        \
    }                                                                                              \
    MSL_INLINE T sin(T x) {                                                                        \
        T n = __builtin_elementwise_roundeven(x * T(0.318309873f));                                \
        return sin_signed(less_turns(x, n), whole(n));                                             \
    }                                                                                              \
    MSL_INLINE T cos(T x) {                                                                        \
        T n = __builtin_elementwise_roundeven(x * T(0.318309873f) - T(0.5f));                      \
        return sin_signed(less_turns(x, n + T(0.5f)), ~whole(n));                                  \
    }                                                                                              \
    MSL_INLINE T sinpi(T x) {                                                                      \
        T n = __builtin_elementwise_roundeven(x);                                                  \
        return sin_signed((x - n) * T(M_PI_F), whole(n));                                          \
    }                                                                                              \
    MSL_INLINE T cospi(T x) {                                                                      \
        x = x - T(2) * __builtin_elementwise_roundeven(x * T(0.5f));                               \
        T n = __builtin_elementwise_roundeven(x - T(0.5f));                                        \
        return sin_signed((x - n - T(0.5f)) * T(M_PI_F), ~whole(n));                               \
    }                                                                                              \
    /* 2^x: a polynomial for the fraction (2^-28), the whole part into the exponent. Results */    \
    /* below 2^-126 are 0. */                                                                      \
    MSL_INLINE T exp2(T x) {                                                                       \
        x = x < T(-127) ? T(-127) : x;                                                             \
        x = x > T(128) ? T(128) : x;                                                               \
        T n = __builtin_elementwise_floor(x);                                                      \
        T f = x - n;                                                                               \
        T s = f * f;                                                                               \
        T p = (T(1) + T(0.6931470633f) * f) + (T(0.2402290851f) + T(5.548618361e-2f) * f) * s;     \
        p = p + ((T(9.673775174e-3f) + T(1.248228946e-3f) * f) + T(2.156597184e-4f) * s) * (s * s); \
        return p * __builtin_bit_cast(T, (whole(n) + I(127)) << 23);                               \
    }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY

} // namespace _fast
} // namespace metal
