// msl_float4(...) and the like: the front end rewrites `float4(...)` to them where the type is no
// template parameter. They are plain functions, since a template would be instantiated again for
// each combination of arguments in each program. The templates below only take vectors with other
// elements. Arguments that fit no overload are reported as "no matching constructor".
#pragma once

#include "bool_vectors.h"
#include "construct.h"
#include "packed.h"

namespace metal {

// Whether A is a vector with elements other than T.
template <class T, class A> inline constexpr bool is_other_vector =
    (lanes_of<A>) > 1 && !is_same_v<A, vec<T, lanes_of<A>>>;

// Whether one of A is such a vector; and whether A is any value but a T or a V.
template <class T, class... A> struct _others : enable_if<(is_other_vector<T, A> || ...)> {};
template <class T, class V, class A>
struct _other : enable_if<!__is_same(A, T) && !__is_same(A, V) && (lanes_of<A>) != 0> {};

} // namespace metal

#define MSL_OTHERS(T, V)                                                                           \
    MSL_INLINE constexpr V msl_##V() { return V(T(0)); }                                           \
    MSL_INLINE constexpr V msl_##V(T a) { return V(a); }                                           \
    MSL_INLINE constexpr V msl_##V(V a) { return a; }                                              \
    template <class A, class = typename metal::_other<T, V, A>::type>                              \
    MSL_INLINE constexpr V msl_##V(A a) {                                                          \
        return msl_make<V>(a);                                                                     \
    }                                                                                              \
    template <class A, class B, class = typename metal::_others<T, A, B>::type>                    \
    MSL_INLINE constexpr V msl_##V(A a, B b) {                                                     \
        return msl_make<V>(a, b);                                                                  \
    }
#define MSL_OTHERS_OF_3(T, V)                                                                      \
    template <class A, class B, class C, class = typename metal::_others<T, A, B, C>::type>        \
    MSL_INLINE constexpr V msl_##V(A a, B b, C c) {                                                \
        return msl_make<V>(a, b, c);                                                               \
    }
#define MSL_CONSTRUCTORS(T)                                                                        \
    MSL_OTHERS(T, T##2)                                                                            \
    MSL_INLINE constexpr T##2 msl_##T##2(T a, T b) { return {a, b}; }                              \
    MSL_OTHERS(T, T##3)                                                                            \
    MSL_INLINE constexpr T##3 msl_##T##3(T a, T b, T c) { return {a, b, c}; }                      \
    MSL_INLINE constexpr T##3 msl_##T##3(T##2 a, T b) {                                            \
        return __builtin_shufflevector(a, T##2(b), 0, 1, 2);                                       \
    }                                                                                              \
    MSL_INLINE constexpr T##3 msl_##T##3(T a, T##2 b) {                                            \
        return __builtin_shufflevector(b, T##2(a), 2, 0, 1);                                       \
    }                                                                                              \
    MSL_OTHERS(T, T##4)                                                                            \
    MSL_OTHERS_OF_3(T, T##4)                                                                       \
    MSL_INLINE constexpr T##4 msl_##T##4(T a, T b, T c, T d) { return {a, b, c, d}; }              \
    MSL_INLINE constexpr T##4 msl_##T##4(T##3 a, T b) {                                            \
        return __builtin_shufflevector(a, T##3(b), 0, 1, 2, 3);                                    \
    }                                                                                              \
    MSL_INLINE constexpr T##4 msl_##T##4(T a, T##3 b) {                                            \
        return __builtin_shufflevector(b, T##3(a), 3, 0, 1, 2);                                    \
    }                                                                                              \
    MSL_INLINE constexpr T##4 msl_##T##4(T##2 a, T##2 b) {                                         \
        return __builtin_shufflevector(a, b, 0, 1, 2, 3);                                          \
    }                                                                                              \
    T##4 msl_##T##4(T##2, T) = delete;                                                             \
    T##4 msl_##T##4(T, T##2) = delete;                                                             \
    MSL_INLINE constexpr T##4 msl_##T##4(T##2 a, T b, T c) {                                       \
        return __builtin_shufflevector(a, T##2{b, c}, 0, 1, 2, 3);                                 \
    }                                                                                              \
    MSL_INLINE constexpr T##4 msl_##T##4(T a, T##2 b, T c) {                                       \
        return __builtin_shufflevector(b, T##2{a, c}, 2, 0, 1, 3);                                 \
    }                                                                                              \
    MSL_INLINE constexpr T##4 msl_##T##4(T a, T b, T##2 c) {                                       \
        return __builtin_shufflevector(c, T##2{a, b}, 2, 3, 0, 1);                                 \
    }

MSL_CONSTRUCTORS(float)
MSL_CONSTRUCTORS(half)
MSL_CONSTRUCTORS(int)
MSL_CONSTRUCTORS(uint)

// Splats of an integer literal.
#define MSL_SPLATS(T)                                                                              \
    MSL_INLINE constexpr T##2 msl_##T##2(int a) { return T##2(T(a)); }                             \
    MSL_INLINE constexpr T##3 msl_##T##3(int a) { return T##3(T(a)); }                             \
    MSL_INLINE constexpr T##4 msl_##T##4(int a) { return T##4(T(a)); }
MSL_SPLATS(float)
MSL_SPLATS(half)
MSL_SPLATS(uint)

#undef MSL_SPLATS
#undef MSL_CONSTRUCTORS
#undef MSL_OTHERS
#undef MSL_OTHERS_OF_3
