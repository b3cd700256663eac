// MSL_GEOMETRIC_FUNCTIONS of list.h, and the geometric functions that fit no row (Metal Shading
// Language 3.1, 6.6).
#pragma once

#include "math.h"

namespace metal {

#define MSL_BODY(T)                                                                                \
    /** The dot product: the sum of the products of the components. */                             \
    MSL_INLINE T dot(T##2 x, T##2 y) { return x.x * y.x + x.y * y.y; }                             \
    MSL_INLINE T dot(T##3 x, T##3 y) { return x.x * y.x + x.y * y.y + x.z * y.z; }                 \
    MSL_INLINE T dot(T##4 x, T##4 y) { return x.x * y.x + x.y * y.y + x.z * y.z + x.w * y.w; }     \
    /** The cross product: a vector perpendicular to both. */                                      \
    MSL_INLINE T##3 cross(T##3 x, T##3 y) { return x.yzx * y.zxy - x.zxy * y.yzx; }
MSL_BODY(float) MSL_BODY(half)
#undef MSL_BODY

#define MSL_BODY(E, T)                                                                             \
    MSL_GEOMETRIC_FUNCTIONS(MSL_DEFINE, T, E)                                                      \
    /** The direction i refracted at a surface with the normal n; ratio is that of the refraction  \
        indices. */                                                                                \
    MSL_INLINE T refract(T i, T n, E ratio) {                                                      \
        E along = dot(n, i);                                                                       \
        E k = E(1) - ratio * ratio * (E(1) - along * along);                                       \
        T found = ratio * i - (ratio * along + sqrt(max(k, E(0)))) * n;                            \
        return k < E(0) ? T(E(0)) : found;                                                         \
    }
MSL_BODY(float, float2) MSL_BODY(float, float3) MSL_BODY(float, float4)
MSL_BODY(half, half2) MSL_BODY(half, half3) MSL_BODY(half, half4)
#undef MSL_BODY

} // namespace metal
