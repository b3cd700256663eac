// Functions of half whose result is within one unit in the last place, in fast and in precise math
// alike: float's, rounded.
#pragma once

#include "core_exponential.h"
#include "core_hyperbolic.h"
#include "core_inverse.h"
#include "core_parts.h"
#include "core_trigonometric.h"
#include "fast_core.h"

namespace metal {
namespace _halves {

#define MSL_BODY(name, value)                                                                      \
    MSL_INLINE half name(half h) {                                                                 \
        float x = h;                                                                               \
        return static_cast<half>(value);                                                           \
    }                                                                                              \
    MSL_LANES_1(half, name, half)
// What is good enough for half over its whole range in fast math.
MSL_BODY(sqrt, __builtin_elementwise_sqrt(x))
MSL_BODY(rsqrt, 1.0f / __builtin_elementwise_sqrt(x))
MSL_BODY(exp, _fast::exp2(x * M_LOG2E_F))
MSL_BODY(exp2, _fast::exp2(x))
MSL_BODY(exp10, _fast::exp2(x * 3.32192809f))
MSL_BODY(sin, _core::sin(x))
MSL_BODY(cos, _core::cos(x))
MSL_BODY(tan, _core::tan(x))
MSL_BODY(sinpi, _core::sinpi(x))
MSL_BODY(cospi, _core::cospi(x))
MSL_BODY(tanpi, _core::tanpi(x))
MSL_BODY(asin, _core::asin(x))
MSL_BODY(acos, _core::acos(x))
MSL_BODY(atan, _core::atan(x))
MSL_BODY(sinh, _core::sinh(x))
MSL_BODY(cosh, _core::cosh(x))
MSL_BODY(tanh, _core::tanh(x))
MSL_BODY(asinh, _core::asinh(x))
MSL_BODY(acosh, _core::acosh(x))
MSL_BODY(atanh, _core::atanh(x))
MSL_BODY(log, _core::log(x))
MSL_BODY(log2, _core::log2(x))
MSL_BODY(log10, _core::log10(x))
#undef MSL_BODY

#define MSL_BODY(name)                                                                             \
    MSL_INLINE half name(half x, half y) {                                                         \
        return static_cast<half>(_core::name(static_cast<float>(x), static_cast<float>(y)));       \
    }                                                                                              \
    MSL_LANES_2(half, name, half, half)
MSL_BODY(atan2)
MSL_BODY(fmod)
MSL_BODY(pow)
MSL_BODY(powr)
#undef MSL_BODY

MSL_INLINE half sincos(half x, half& cosine) {
    float c;
    half found = static_cast<half>(_core::sincos(x, c));
    cosine = static_cast<half>(c);
    return found;
}
MSL_INLINE half modf(half x, half& whole) {
    float w;
    half found = static_cast<half>(_core::modf(x, w));
    whole = static_cast<half>(w);
    return found;
}
MSL_LANES_OUT(sincos, half, half)
MSL_LANES_OUT(modf, half, half)

MSL_INLINE half fract(half x) {
    half found = x - __builtin_elementwise_floor(x);
    found = found >= half(1.0f) ? half(0x1.ffcp-1f) : found;
    return __builtin_elementwise_abs(x) == half(INFINITY) ? half(0.0f) : found;
}
MSL_LANES_1(half, fract, half)

// The product of two halves is exact in float; a sum rounded to odd leaves one rounding.
MSL_INLINE half fma(half x, half y, half z) {
    float product = static_cast<float>(x) * static_cast<float>(y), addend = z;
    float sum = product + addend;
    float found = _core::sum_to_odd(product, addend);
    return static_cast<half>(__builtin_elementwise_abs(sum) < INFINITY ? found : sum);
}
MSL_LANES_3(half, fma, half)

} // namespace _halves

#define MSL_MATH_NAMES(M)                                                                          \
    M(sqrt) M(rsqrt) M(exp) M(exp2) M(exp10) M(sin) M(cos) M(tan) M(sinpi) M(cospi) M(tanpi)       \
    M(asin) M(acos) M(atan) M(sinh) M(cosh) M(tanh) M(asinh) M(acosh) M(atanh) M(log) M(log2)      \
    M(log10) M(atan2) M(fmod) M(pow) M(powr) M(sincos) M(modf) M(fract)
#define MSL_USE(name) using _halves::name;
MSL_MATH_NAMES(MSL_USE)
using _halves::fma;
#undef MSL_USE

} // namespace metal
