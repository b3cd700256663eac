// The exponential and the logarithm of float in fast math. The instructions of the packaged CPU
// driver exceed the bounds (3.2 ulp instead of 3, near 0 and just below 1/2). The polynomial of the
// exponential is summed as a tree, since in a marching loop each step waits for the one before. The
// driver's log2, sin and cos keep their bounds; arithmetic instead of sin and cos made whole shaders
// up to twice as slow.
#pragma once

#include "common.h"

namespace metal {
namespace _fast {

MSL_INLINE int whole(float x) { return static_cast<int>(x); }
MSL_INLINE int2 whole(float2 x) { return __builtin_convertvector(x, int2); }
MSL_INLINE int3 whole(float3 x) { return __builtin_convertvector(x, int3); }
MSL_INLINE int4 whole(float4 x) { return __builtin_convertvector(x, int4); }
MSL_INLINE float number(int x) { return static_cast<float>(x); }
MSL_INLINE float2 number(int2 x) { return __builtin_convertvector(x, float2); }
MSL_INLINE float3 number(int3 x) { return __builtin_convertvector(x, float3); }
MSL_INLINE float4 number(int4 x) { return __builtin_convertvector(x, float4); }

#define MSL_BODY(T, I, B)                                                                          \
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
    }                                                                                              \
    /* The mantissa m in [sqrt(1/2), sqrt(2)), ln m = 2 atanh(s) with s = (m - 1) / (m + 1): 2^-30. \
     * Denormals are zeros. */                                                                     \
    MSL_INLINE T log(T x) {                                                                        \
        I bits = __builtin_bit_cast(I, x), above = bits - I(0x3f3504f3);                           \
        T f = __builtin_bit_cast(T, bits - (above & I(-0x800000))) - T(1);                        \
        T s = f / (T(2) + f), q = s * s;                                                           \
        T p = T(0.6666677594f) + (T(0.3997753263f) + T(0.2987199724f) * q) * q;                    \
        T found = number(above >> 23) * T(0.693147182f) + (s * T(2) + s * q * p);                  \
        found = x < T(0x1p-126f) ? T(-INFINITY) : found;                                           \
        found = x < T(0) ? T(NAN) : found;                                                         \
        return x < T(INFINITY) ? found : x;                                                        \
    }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY

} // namespace _fast
} // namespace metal
