// MSL_MATH_FUNCTIONS and MSL_CORE_FUNCTIONS of list.h for half, in fast and in precise math: the
// function of float, rounded. The results are within one unit in the last place.
#pragma once

#include "core_exponential.h"
#include "core_hyperbolic.h"
#include "core_inverse.h"
#include "core_parts.h"
#include "core_trigonometric.h"
#include "fast_core.h"
#include "list.h"

namespace metal {
namespace _halves {

#define MSL_CORE(name, arguments)                                                                  \
    MSL_ROUNDED_##arguments(name)                                                                  \
    MSL_LANES(half, half, half, name, arguments)
#define MSL_ROUNDED_1(name)                                                                        \
    MSL_INLINE half name(half x) { return _narrow(_core::name(_wide(x))); }
#define MSL_ROUNDED_2(name)                                                                        \
    MSL_INLINE half name(half x, half y) { return _narrow(_core::name(_wide(x), _wide(y))); }
#define MSL_ROUNDED_out(name)                                                                      \
    MSL_INLINE half name(half x, half& out) {                                                      \
        float second;                                                                              \
        half found = _narrow(_core::name(_wide(x), second));                                       \
        out = _narrow(second);                                                                     \
        return found;                                                                              \
    }
#define MSL_ROW(T, name, arguments, mixed, precise, half, ...)                                     \
    MSL_IF_##half(MSL_CORE, name, arguments)
MSL_MATH_FUNCTIONS(MSL_ROW, float, int)
#undef MSL_ROW
#define MSL_ROW(name, arguments, mixed) MSL_CORE(name, arguments)
MSL_CORE_FUNCTIONS(MSL_ROW)
#undef MSL_ROW
#undef MSL_ROUNDED_1
#undef MSL_ROUNDED_2
#undef MSL_ROUNDED_out
#undef MSL_CORE

// Fast math of float is exact enough for the whole range of half.
#define MSL_BODY(name, value)                                                                      \
    MSL_INLINE half name(half h) {                                                                 \
        float x = h;                                                                               \
        return static_cast<half>(value);                                                           \
    }                                                                                              \
    MSL_LANES(half, half, half, name, 1)
MSL_BODY(sqrt, __builtin_elementwise_sqrt(x))
MSL_BODY(rsqrt, 1.0f / __builtin_elementwise_sqrt(x))
MSL_BODY(exp, _fast::exp2(x * M_LOG2E_F))
MSL_BODY(exp2, _fast::exp2(x))
MSL_BODY(exp10, _fast::exp2(x * 3.32192809f))
#undef MSL_BODY

#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T divide(T x, T y) { return x / y; }
MSL_EACH_HALF(MSL_BODY)
#undef MSL_BODY

MSL_INLINE half fract(half x) {
    half found = x - __builtin_elementwise_floor(x);
    found = found >= half(1.0f) ? half(0x1.ffcp-1f) : found;
    return __builtin_elementwise_abs(x) == half(INFINITY) ? half(0.0f) : found;
}
MSL_LANES(half, half, half, fract, 1)

} // namespace _halves

#define MSL_USE(T, name, ...) using _halves::name;
#define MSL_USE_CORE(name, ...) using _halves::name;
MSL_MATH_FUNCTIONS(MSL_USE, float, int)
MSL_CORE_FUNCTIONS(MSL_USE_CORE)
namespace precise {
MSL_MATH_FUNCTIONS(MSL_USE, float, int)
MSL_CORE_FUNCTIONS(MSL_USE_CORE)
} // namespace precise
#undef MSL_USE
#undef MSL_USE_CORE

} // namespace metal
