// The exponential of float in fast math. The instruction of the packaged CPU driver exceeds the
// bound near 0 (3.2 ulp instead of 3). The polynomial is summed as a tree, since in a marching loop
// each step waits for the one before. The driver's sin and cos keep their bound; arithmetic instead
// of them made whole shaders up to twice as slow.
#pragma once

#include "common.h"

namespace metal {
namespace _fast {

MSL_INLINE int whole(float x) { return static_cast<int>(x); }
MSL_INLINE int2 whole(float2 x) { return __builtin_convertvector(x, int2); }
MSL_INLINE int3 whole(float3 x) { return __builtin_convertvector(x, int3); }
MSL_INLINE int4 whole(float4 x) { return __builtin_convertvector(x, int4); }

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
    }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY

} // namespace _fast
} // namespace metal
