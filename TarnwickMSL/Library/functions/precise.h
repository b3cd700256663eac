// MSL_MATH_FUNCTIONS and MSL_CORE_FUNCTIONS of list.h in precise math.
#pragma once

#include "math.h"

namespace metal {
namespace precise {

#define MSL_CORE(name, arguments)                                                                  \
    MSL_DEFINE(float, float, name, arguments, return _core::name(MSL_GIVES_##arguments);)          \
    MSL_LANES(float, float, float, name, arguments)
#define MSL_ROW(T, name, arguments, mixed, precise, ...)                                           \
    MSL_IF_##precise(MSL_CORE, name, arguments)
MSL_MATH_FUNCTIONS(MSL_ROW, float, int)
#undef MSL_ROW
#define MSL_ROW(name, arguments, mixed) MSL_CORE(name, arguments)
MSL_CORE_FUNCTIONS(MSL_ROW)
#undef MSL_ROW
#undef MSL_CORE

#pragma float_control(precise, on, push)
#pragma clang fp contract(off)
#define MSL_BODY(T, I, B)                                                                          \
    MSL_INLINE T sqrt(T x) { return __builtin_elementwise_sqrt(x); }                               \
    MSL_INLINE T divide(T x, T y) { return x / y; }
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY
#pragma float_control(pop)

} // namespace precise
} // namespace metal
