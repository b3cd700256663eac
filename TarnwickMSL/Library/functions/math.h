// MSL_MATH_FUNCTIONS and MSL_CORE_FUNCTIONS of list.h in fast math.
#pragma once

#include "common.h"
#include "fast_core.h"
#include "halves.h"

namespace metal {

#define MSL_ROW(T, name, arguments, mixed, precise, half, ...)                                     \
    MSL_INLINE T name(MSL_TAKES_##arguments(T)) { __VA_ARGS__ }
#define MSL_BODY(T, I, B) MSL_MATH_FUNCTIONS(MSL_ROW, T, I)
MSL_EACH_FLOAT(MSL_BODY)
#undef MSL_BODY
#undef MSL_ROW

#define MSL_ROW(name, arguments, mixed)                                                            \
    MSL_DEFINE(float, float, name, arguments, return _core::name(MSL_GIVES_##arguments);)          \
    MSL_LANES(float, float, float, name, arguments)
MSL_CORE_FUNCTIONS(MSL_ROW)
#undef MSL_ROW

} // namespace metal
