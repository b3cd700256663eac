// Geometric functions (Metal Shading Language 3.1, 6.6).
#pragma once

#include "math.h"

namespace metal {

#define MSL_BODY(T)                                                                                \
    MSL_INLINE T dot(T##2 x, T##2 y) { return x.x * y.x + x.y * y.y; }                             \
    MSL_INLINE T dot(T##3 x, T##3 y) { return x.x * y.x + x.y * y.y + x.z * y.z; }                 \
    MSL_INLINE T dot(T##4 x, T##4 y) { return x.x * y.x + x.y * y.y + x.z * y.z + x.w * y.w; }     \
    MSL_INLINE T##3 cross(T##3 x, T##3 y) { return x.yzx * y.zxy - x.zxy * y.yzx; }
MSL_BODY(float) MSL_BODY(half)
#undef MSL_BODY

#define MSL_BODY(T, V)                                                                             \
    MSL_INLINE T length_squared(V x) { return dot(x, x); }                                         \
    MSL_INLINE T length(V x) { return sqrt(dot(x, x)); }                                           \
    MSL_INLINE T distance_squared(V x, V y) { return length_squared(x - y); }                      \
    MSL_INLINE T distance(V x, V y) { return length(x - y); }                                      \
    MSL_INLINE V normalize(V x) { return x * rsqrt(dot(x, x)); }                                   \
    MSL_INLINE V faceforward(V n, V i, V reference) { return dot(reference, i) < T(0) ? n : -n; }  \
    MSL_INLINE V reflect(V i, V n) { return i - T(2) * dot(n, i) * n; }                            \
    MSL_INLINE V refract(V i, V n, T ratio) {                                                      \
        T along = dot(n, i);                                                                       \
        T k = T(1) - ratio * ratio * (T(1) - along * along);                                       \
        V found = ratio * i - (ratio * along + sqrt(max(k, T(0)))) * n;                            \
        return k < T(0) ? V(T(0)) : found;                                                         \
    }
MSL_BODY(float, float2) MSL_BODY(float, float3) MSL_BODY(float, float4)
MSL_BODY(half, half2) MSL_BODY(half, half3) MSL_BODY(half, half4)
#undef MSL_BODY

} // namespace metal
