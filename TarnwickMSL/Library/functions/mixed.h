// Calls with scalars of different types: `max(0, x)`, `pow(x, 2)`, `clamp(h, 0.0, 1.0)`, `sqrt(2)`.
// The arguments get the type of an arithmetic expression of them; functions of floats convert
// integers to float.
#pragma once

#include "math.h"
#include "integer.h"

namespace metal {

template <class... T>
inline constexpr bool _scalars = (__is_arithmetic(T) && ...);
template <class A, class... T> inline constexpr bool _alike = (__is_same(A, T) && ...);
template <class... T> using _common = decltype((T() + ...));
template <class... T>
using _floating = conditional_t<is_integral_v<_common<T...>>, float, _common<T...>>;
// Scalars of different types; and these or integers, for functions without overloads for integers.
template <class... T> using _differing = enable_if_t<_scalars<T...> && !_alike<T...>>;
template <class A, class... T>
using _converted = enable_if_t<_scalars<A, T...> && (!_alike<A, T...> || __is_integral(A))>;

#define MSL_MIXED_none(name, arguments)
#define MSL_MIXED_common(name, arguments) MSL_COMMON_##arguments(name)
#define MSL_MIXED_floating(name, arguments) MSL_FLOATING_##arguments(name)
#define MSL_COMMON_2(name)                                                                         \
    template <class A, class B, class = _differing<A, B>>                                          \
    MSL_INLINE constexpr auto name(A a, B b) {                                                     \
        typedef _common<A, B> T;                                                                   \
        return name(static_cast<T>(a), static_cast<T>(b));                                         \
    }
#define MSL_COMMON_3(name)                                                                         \
    template <class A, class B, class C, class = _differing<A, B, C>>                              \
    MSL_INLINE constexpr auto name(A a, B b, C c) {                                                \
        typedef _common<A, B, C> T;                                                                \
        return name(static_cast<T>(a), static_cast<T>(b), static_cast<T>(c));                      \
    }
#define MSL_FLOATING_1(name)                                                                       \
    template <class A, class = enable_if_t<__is_integral(A)>> MSL_INLINE float name(A a) {         \
        return name(static_cast<float>(a));                                                        \
    }
#define MSL_FLOATING_2(name)                                                                       \
    template <class A, class B, class = _converted<A, B>>                                          \
    MSL_INLINE auto name(A a, B b) {                                                               \
        typedef _floating<A, B> T;                                                                 \
        return name(static_cast<T>(a), static_cast<T>(b));                                         \
    }
#define MSL_FLOATING_3(name)                                                                       \
    template <class A, class B, class C, class = _converted<A, B, C>>                              \
    MSL_INLINE auto name(A a, B b, C c) {                                                          \
        typedef _floating<A, B, C> T;                                                              \
        return name(static_cast<T>(a), static_cast<T>(b), static_cast<T>(c));                      \
    }
#define MSL_ROW(T, name, arguments, mixed, ...) MSL_MIXED_##mixed(name, arguments)
MSL_COMMON_FUNCTIONS(MSL_ROW, float)
MSL_MATH_FUNCTIONS(MSL_ROW, float, int)
#undef MSL_ROW
#define MSL_ROW(R, T, A, name, arguments, mixed) MSL_MIXED_##mixed(name, arguments)
MSL_LANE_FUNCTIONS(MSL_ROW, float)
#undef MSL_ROW
#define MSL_ROW(name, arguments, mixed) MSL_MIXED_##mixed(name, arguments)
MSL_CORE_FUNCTIONS(MSL_ROW)
#undef MSL_ROW
#undef MSL_MIXED_none
#undef MSL_MIXED_common
#undef MSL_MIXED_floating
#undef MSL_COMMON_2
#undef MSL_COMMON_3
#undef MSL_FLOATING_1
#undef MSL_FLOATING_2
#undef MSL_FLOATING_3

} // namespace metal
