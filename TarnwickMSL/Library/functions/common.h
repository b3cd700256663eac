// Functions of float and half that every lane does for itself and that are the same in fast and in
// precise math (Metal Shading Language 3.1, 6.4 and 6.5).
#pragma once

#include "overloads.h"

namespace metal {

#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T abs(T x) { return __builtin_elementwise_abs(x); }                                 \
    MSL_INLINE T fabs(T x) { return __builtin_elementwise_abs(x); }                                \
    MSL_INLINE T floor(T x) { return __builtin_elementwise_floor(x); }                             \
    MSL_INLINE T ceil(T x) { return __builtin_elementwise_ceil(x); }                               \
    MSL_INLINE T trunc(T x) { return __builtin_elementwise_trunc(x); }                             \
    MSL_INLINE T rint(T x) { return __builtin_elementwise_roundeven(x); }                          \
    MSL_INLINE T copysign(T x, T y) { return __builtin_elementwise_copysign(x, y); }               \
    MSL_INLINE T fmin(T x, T y) { return __builtin_elementwise_min(x, y); }                        \
    MSL_INLINE T fmax(T x, T y) { return __builtin_elementwise_max(x, y); }                        \
    MSL_INLINE T min(T x, T y) { return __builtin_elementwise_min(x, y); }                         \
    MSL_INLINE T max(T x, T y) { return __builtin_elementwise_max(x, y); }                         \
    MSL_INLINE T fmin3(T x, T y, T z) { return min(x, min(y, z)); }                                \
    MSL_INLINE T fmax3(T x, T y, T z) { return max(x, max(y, z)); }                                \
    MSL_INLINE T fmedian3(T x, T y, T z) { return max(min(x, y), min(max(x, y), z)); }             \
    MSL_INLINE T min3(T x, T y, T z) { return min(x, min(y, z)); }                                 \
    MSL_INLINE T max3(T x, T y, T z) { return max(x, max(y, z)); }                                 \
    MSL_INLINE T median3(T x, T y, T z) { return max(min(x, y), min(max(x, y), z)); }              \
    MSL_INLINE T fdim(T x, T y) { return x <= y ? T(0) : x - y; }                                  \
    MSL_INLINE T divide(T x, T y) { return x / y; }                                                \
    MSL_INLINE T clamp(T x, T least, T most) { return min(max(x, least), most); }                  \
    MSL_INLINE T saturate(T x) { return min(max(x, T(0)), T(1)); }                                 \
    MSL_INLINE T mix(T x, T y, T a) { return x + (y - x) * a; }                                    \
    MSL_INLINE T sign(T x) { return x > T(0) ? T(1) : (x < T(0) ? T(-1) : T(0)); }                 \
    MSL_INLINE T step(T edge, T x) { return x < edge ? T(0) : T(1); }                              \
    MSL_INLINE T smoothstep(T from, T to, T x) {                                                   \
        T t = saturate((x - from) / (to - from));                                                  \
        return t * t * (T(3) - T(2) * t);                                                          \
    }
MSL_EACH_FLOATING(MSL_BODY)
#undef MSL_BODY

// Ties go away from zero. Adding the largest number below a half, not the half itself, keeps what
// lies just under a tie, and whole numbers, where they are.
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T round(T x) { return trunc(x + copysign(T(0x1.fffffep-2f), x)); }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T round(T x) { return trunc(x + copysign(T(half(0x1.ffcp-2f)), x)); }
MSL_EACH_HALF(MSL_BODY)
#undef MSL_BODY

// Parts: exact, by the bits. ldexp's n and frexp's exponent are integers of as many lanes.
MSL_INLINE float frexp(float x, int& exponent) { return _core::frexp(x, exponent); }
MSL_INLINE half frexp(half x, int& exponent) { return _narrow(_core::frexp(_wide(x), exponent)); }
MSL_INLINE float ldexp(float x, int n) { return _core::ldexp(x, n); }
MSL_INLINE half ldexp(half x, int n) { return _narrow(_core::ldexp(_wide(x), n)); }
MSL_INLINE int ilogb(float x) { return _core::ilogb(x); }
MSL_INLINE int ilogb(half x) { return _core::ilogb(_wide(x)); }
MSL_INLINE float nextafter(float x, float y) { return _core::nextafter(x, y); }
MSL_INLINE half nextafter(half x, half y) {
    ushort from = __builtin_bit_cast(ushort, x), to = __builtin_bit_cast(ushort, y);
    ushort size = from & 0x7fff, reach = to & 0x7fff;
    if (size > 0x7c00 || reach > 0x7c00)
        return static_cast<half>(NAN);
    if (from == to || (size | reach) == 0)
        return y;
    bool away = ((from ^ to) >> 15) == 0 && reach > size;
    ushort next = static_cast<ushort>(away ? from + 1 : from - 1);
    return __builtin_bit_cast(half, size == 0 ? static_cast<ushort>((to & 0x8000) | 1) : next);
}
MSL_LANES_OUT(frexp, float, int)
MSL_LANES_OUT(frexp, half, int)
MSL_LANES_2(float, ldexp, float, int)
MSL_LANES_2(half, ldexp, half, int)
MSL_LANES_1(int, ilogb, float)
MSL_LANES_1(int, ilogb, half)
MSL_LANES_2(float, nextafter, float, float)
MSL_LANES_2(half, nextafter, half, half)

// Rounded once. Devices may round twice in their own instruction, so it is composed.
MSL_INLINE float fma(float x, float y, float z) { return _core::fused(x, y, z); }
MSL_LANES_3(float, fma, float)

} // namespace metal
