// Scalars of several types in one call: `max(0, x)`, `pow(x, 2)`, `clamp(h, 0.0, 1.0)`, `sqrt(2)`. The
// arguments get the type that an arithmetic expression of them would have, so that no overload
// wins by chance; where only floats are possible, integers become float.
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
// Scalars of differing types; and these or integers, where there is no overload for integers.
template <class... T> using _differing = enable_if_t<_scalars<T...> && !_alike<T...>>;
template <class A, class... T>
using _converted = enable_if_t<_scalars<A, T...> && (!_alike<A, T...> || __is_integral(A))>;

#define MSL_BODY(name)                                                                             \
    template <class A, class B, class = _differing<A, B>>                                          \
    MSL_INLINE constexpr auto name(A a, B b) {                                                     \
        typedef _common<A, B> T;                                                                   \
        return name(static_cast<T>(a), static_cast<T>(b));                                         \
    }
MSL_BODY(min) MSL_BODY(max)
#undef MSL_BODY
#define MSL_BODY(name)                                                                             \
    template <class A, class B, class C, class = _differing<A, B, C>>                              \
    MSL_INLINE constexpr auto name(A a, B b, C c) {                                                \
        typedef _common<A, B, C> T;                                                                \
        return name(static_cast<T>(a), static_cast<T>(b), static_cast<T>(c));                      \
    }
MSL_BODY(clamp) MSL_BODY(min3) MSL_BODY(max3) MSL_BODY(median3)
#undef MSL_BODY

#define MSL_BODY(name)                                                                             \
    template <class A, class = enable_if_t<__is_integral(A)>> MSL_INLINE float name(A a) {         \
        return name(static_cast<float>(a));                                                        \
    }
MSL_BODY(sqrt) MSL_BODY(rsqrt) MSL_BODY(exp) MSL_BODY(exp2) MSL_BODY(exp10) MSL_BODY(sin)
MSL_BODY(cos) MSL_BODY(tan) MSL_BODY(sinpi) MSL_BODY(cospi) MSL_BODY(tanpi) MSL_BODY(asin)
MSL_BODY(acos) MSL_BODY(atan) MSL_BODY(sinh) MSL_BODY(cosh) MSL_BODY(tanh) MSL_BODY(asinh)
MSL_BODY(acosh) MSL_BODY(atanh) MSL_BODY(log) MSL_BODY(log2) MSL_BODY(log10) MSL_BODY(fabs)
MSL_BODY(floor) MSL_BODY(ceil) MSL_BODY(trunc) MSL_BODY(rint) MSL_BODY(round) MSL_BODY(fract)
MSL_BODY(saturate) MSL_BODY(sign)
#undef MSL_BODY
#define MSL_BODY(name)                                                                             \
    template <class A, class B, class = _converted<A, B>>                                          \
    MSL_INLINE auto name(A a, B b) {                                                               \
        typedef _floating<A, B> T;                                                                 \
        return name(static_cast<T>(a), static_cast<T>(b));                                         \
    }
MSL_BODY(pow) MSL_BODY(powr) MSL_BODY(atan2) MSL_BODY(fmod) MSL_BODY(step) MSL_BODY(fmin)
MSL_BODY(fmax) MSL_BODY(fdim) MSL_BODY(copysign) MSL_BODY(divide)
#undef MSL_BODY
#define MSL_BODY(name)                                                                             \
    template <class A, class B, class C, class = _converted<A, B, C>>                              \
    MSL_INLINE auto name(A a, B b, C c) {                                                          \
        typedef _floating<A, B, C> T;                                                              \
        return name(static_cast<T>(a), static_cast<T>(b), static_cast<T>(c));                      \
    }
MSL_BODY(mix) MSL_BODY(smoothstep) MSL_BODY(fma) MSL_BODY(fmin3) MSL_BODY(fmax3) MSL_BODY(fmedian3)
#undef MSL_BODY

} // namespace metal
