// Calls with scalars of different types: `max(0, x)`, `pow(x, 2)`, `clamp(h, 0.0, 1.0)`, `sqrt(2)`.
// The arguments get the type of an arithmetic expression of them; functions of floats convert
// integers to float.
//
// A program may have a template of the same name, `template <class T> T sign(T)`. The empty pack None
// makes each of these templates less specialised than the program's (ISO C++17, 17.5.6.2), so that
// the call is not ambiguous.
#pragma once

#include "math.h"
#include "integer.h"

namespace metal {

template <class... T> using _common = decltype((T() + ...));
template <class... T>
using _floating = conditional_t<__is_integral(_common<T...>), float, _common<T...>>;
// Scalars of different types; and these or integers, for functions without overloads for integers.
template <class A, class B>
struct _differing_2 : enable_if<__is_arithmetic(A) && __is_arithmetic(B) && !__is_same(A, B)> {};
template <class A, class B, class C>
struct _differing_3 : enable_if<__is_arithmetic(A) && __is_arithmetic(B) && __is_arithmetic(C) &&
                                !(__is_same(A, B) && __is_same(A, C))> {};
template <class A> struct _converted_1 : enable_if<__is_integral(A)> {};
template <class A, class B> struct _converted_2 : _differing_2<A, B> {};
template <class A> struct _converted_2<A, A> : _converted_1<A> {};
template <class A, class B, class C> struct _converted_3 : _differing_3<A, B, C> {};
template <class A> struct _converted_3<A, A, A> : _converted_1<A> {};

// A template parameter that requires the condition, and that None is empty.
#define MSL_IF(condition, ...)                                                                     \
    class = typename condition<__VA_ARGS__>::type, class = enable_if_t<sizeof...(None) == 0>

#define MSL_MIXED_none(name, arguments)
#define MSL_MIXED_common(name, arguments) MSL_COMMON_##arguments(name)
#define MSL_MIXED_floating(name, arguments) MSL_FLOATING_##arguments(name)
#define MSL_COMMON_2(name)                                                                         \
    template <class A, class B, class... None, MSL_IF(_differing_2, A, B)>                         \
    MSL_INLINE constexpr auto name(A a, B b, None...) {                                            \
        typedef _common<A, B> T;                                                                   \
        return name(static_cast<T>(a), static_cast<T>(b));                                         \
    }
#define MSL_COMMON_3(name)                                                                         \
    template <class A, class B, class C, class... None, MSL_IF(_differing_3, A, B, C)>             \
    MSL_INLINE constexpr auto name(A a, B b, C c, None...) {                                       \
        typedef _common<A, B, C> T;                                                                \
        return name(static_cast<T>(a), static_cast<T>(b), static_cast<T>(c));                      \
    }
#define MSL_FLOATING_1(name)                                                                       \
    template <class A, class... None, MSL_IF(_converted_1, A)>                                     \
    MSL_INLINE float name(A a, None...) {                                                          \
        return name(static_cast<float>(a));                                                        \
    }
#define MSL_FLOATING_2(name)                                                                       \
    template <class A, class B, class... None, MSL_IF(_converted_2, A, B)>                         \
    MSL_INLINE auto name(A a, B b, None...) {                                                      \
        typedef _floating<A, B> T;                                                                 \
        return name(static_cast<T>(a), static_cast<T>(b));                                         \
    }
#define MSL_FLOATING_3(name)                                                                       \
    template <class A, class B, class C, class... None, MSL_IF(_converted_3, A, B, C)>             \
    MSL_INLINE auto name(A a, B b, C c, None...) {                                                 \
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
#undef MSL_IF
#undef MSL_MIXED_none
#undef MSL_MIXED_common
#undef MSL_MIXED_floating
#undef MSL_COMMON_2
#undef MSL_COMMON_3
#undef MSL_FLOATING_1
#undef MSL_FLOATING_2
#undef MSL_FLOATING_3

} // namespace metal
