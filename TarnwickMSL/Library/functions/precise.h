// Math functions of float in precise math (Metal Shading Language 3.1, 8.4).
#pragma once

#include "math.h"

namespace metal {
namespace precise {

#define MSL_BODY(name)                                                                             \
    MSL_INLINE float name(float x) { return _core::name(x); }                                      \
    MSL_LANES_1(float, name, float)
MSL_BODY(rsqrt) MSL_BODY(exp) MSL_BODY(exp2) MSL_BODY(exp10) MSL_BODY(sin) MSL_BODY(cos)
MSL_BODY(tan) MSL_BODY(sinpi) MSL_BODY(cospi) MSL_BODY(tanpi) MSL_BODY(asin) MSL_BODY(acos)
MSL_BODY(atan) MSL_BODY(sinh) MSL_BODY(cosh) MSL_BODY(tanh) MSL_BODY(asinh) MSL_BODY(acosh)
MSL_BODY(atanh) MSL_BODY(log) MSL_BODY(log2) MSL_BODY(log10) MSL_BODY(fract)
#undef MSL_BODY

#define MSL_BODY(name)                                                                             \
    MSL_INLINE float name(float x, float y) { return _core::name(x, y); }                          \
    MSL_LANES_2(float, name, float, float)
MSL_BODY(atan2) MSL_BODY(fmod) MSL_BODY(pow) MSL_BODY(powr)
#undef MSL_BODY

#define MSL_BODY(name)                                                                             \
    MSL_INLINE float name(float x, float& out) { return _core::name(x, out); }                     \
    MSL_LANES_OUT(name, float, float)
MSL_BODY(sincos) MSL_BODY(modf)
#undef MSL_BODY

#pragma float_control(precise, on, push)
#pragma clang fp contract(off)
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T sqrt(T x) { return __builtin_elementwise_sqrt(x); }                               \
    MSL_INLINE T divide(T x, T y) { return x / y; }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY
#pragma float_control(pop)
MSL_INLINE half divide(half x, half y) { return x / y; }
MSL_LANES_2(half, divide, half, half)

#define MSL_USE(name) using _halves::name;
MSL_MATH_NAMES(MSL_USE)
#undef MSL_USE

} // namespace precise
} // namespace metal
