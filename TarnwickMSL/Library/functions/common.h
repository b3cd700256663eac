// MSL_COMMON_FUNCTIONS and MSL_LANE_FUNCTIONS of list.h.
#pragma once

#include "list.h"
#include "overloads.h"

namespace metal {

// The largest number below 1/2. round() adds it rather than 1/2, which would move the numbers just
// below a tie, and large whole numbers.
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T _below_half(T) { return T(0x1.fffffep-2f); }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T _below_half(T) { return T(half(0x1.ffcp-2f)); }
MSL_EACH_HALF(MSL_BODY)
#undef MSL_BODY

// Fast code need not know a NaN, but fmin and fmax promise to ignore it.
#pragma float_control(precise, on, push)
#define MSL_BODY(T, suffix)                                                                        \
    MSL_INLINE T _number_min(T x, T y) { return __builtin_fmin##suffix(x, y); }                    \
    MSL_INLINE T _number_max(T x, T y) { return __builtin_fmax##suffix(x, y); }                    \
    MSL_LANES(T, T, T, _number_min, 2)                                                             \
    MSL_LANES(T, T, T, _number_max, 2)
MSL_BODY(float, f)
MSL_BODY(half, f16)
#undef MSL_BODY
#pragma float_control(pop)

#define MSL_ROW(T, name, arguments, mixed, ...)                                                    \
    MSL_INLINE T name(MSL_TAKES_##arguments(T)) { __VA_ARGS__ }
#define MSL_BODY(T, I, B) MSL_COMMON_FUNCTIONS(MSL_ROW, T)
MSL_EACH_FLOATING(MSL_BODY)
#undef MSL_BODY
#undef MSL_ROW

// The parts of a number: exact, by the bits.
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

// Rounded once: float's is composed, since devices may round twice in their own instruction. The
// product of two halves is exact in float; a sum rounded to odd leaves one rounding.
MSL_INLINE float fma(float x, float y, float z) { return _core::fused(x, y, z); }
MSL_INLINE half fma(half x, half y, half z) {
    float product = static_cast<float>(x) * static_cast<float>(y), addend = z;
    float sum = product + addend;
    float found = _core::sum_to_odd(product, addend);
    return static_cast<half>(__builtin_elementwise_abs(sum) < INFINITY ? found : sum);
}

#define MSL_ROW(R, T, A, name, arguments, mixed) MSL_LANES(R, T, A, name, arguments)
MSL_LANE_FUNCTIONS(MSL_ROW, float)
MSL_LANE_FUNCTIONS(MSL_ROW, half)
#undef MSL_ROW

} // namespace metal
