// Scalar types (Metal Shading Language 3.1, 2.1) and the traits that the library itself uses.
#pragma once

typedef unsigned char uchar;
typedef unsigned short ushort;
typedef unsigned int uint;
typedef unsigned long ulong;
typedef signed char int8_t;
typedef unsigned char uint8_t;
typedef short int16_t;
typedef unsigned short uint16_t;
typedef int int32_t;
typedef unsigned int uint32_t;
typedef long int64_t;
typedef unsigned long uint64_t;
typedef decltype(sizeof(0)) size_t;
typedef decltype((char*)0 - (char*)0) ptrdiff_t;
typedef ulong uintptr_t;
typedef long intptr_t;

#define NULL nullptr

// The compiler has `half` as a keyword.
#ifndef __METAL__
typedef _Float16 half;
#endif

namespace metal {

template <bool, class T = void> struct enable_if {};
template <class T> struct enable_if<true, T> {
    typedef T type;
};
template <bool condition, class T = void>
using enable_if_t = typename enable_if<condition, T>::type;

// Conditions of templates that are candidates for many calls: `class = typename _number<A>::type`.
// Clang keeps their instances, of types alone, for later calls and programs. It would evaluate an
// expression, as in enable_if_t<__is_arithmetic(A)>, at every call again, which takes ten times as
// long.
template <class A> struct _number : enable_if<__is_arithmetic(A)> {};

template <class A, class B> inline constexpr bool is_same_v = __is_same(A, B);
template <class A, class B> struct is_same {
    static constexpr bool value = is_same_v<A, B>;
};

template <bool, class A, class B> struct conditional {
    typedef A type;
};
template <class A, class B> struct conditional<false, A, B> {
    typedef B type;
};
template <bool condition, class A, class B>
using conditional_t = typename conditional<condition, A, B>::type;

template <class T> inline constexpr bool is_floating_point_v = __is_floating_point(T);
template <class T> inline constexpr bool is_integral_v = __is_integral(T);
template <class T> inline constexpr bool is_arithmetic_v = __is_arithmetic(T);
template <class T> inline constexpr bool is_signed_v =
    __is_floating_point(T) || (__is_integral(T) && T(-1) < T(0));
template <class T> inline constexpr bool is_enum_v = __is_enum(T);
template <class T> struct is_floating_point {
    static constexpr bool value = is_floating_point_v<T>;
};
template <class T> struct is_integral {
    static constexpr bool value = is_integral_v<T>;
};

// A vector has these two traits of its lanes.
template <class T, int lanes>
inline constexpr bool is_floating_point_v<T __attribute__((ext_vector_type(lanes)))> =
    is_floating_point_v<T>;
template <class T, int lanes>
inline constexpr bool is_integral_v<T __attribute__((ext_vector_type(lanes)))> = is_integral_v<T>;

} // namespace metal
