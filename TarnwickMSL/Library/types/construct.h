// Constructors of vectors (Metal Shading Language 3.1, 2.2.1). float4 is no class, so C++ has no
// `float4(v3, 1)`. The front end rewrites these expressions to calls of the functions below:
// `float4(...)`, `float4{...}`, `float4 name(...)`, and `T(...)` where T is a template parameter.
// Shuffles move the lanes, since constant expressions cannot read a lane of a vector.
#pragma once

#include "vectors.h"

#define MSL_INLINE inline __attribute__((always_inline))

namespace metal {

// The number of lanes of an argument. A type that is neither scalar nor vector has more than fit.
template <class A> inline constexpr int given_lanes = lanes_of<A> == 0 ? 100 : lanes_of<A>;
// Whether A is a record with a conversion to V.
template <class V, class A> inline constexpr bool gives_itself_as =
    lanes_of<A> == 0 && __is_convertible_to(A, V);

template <class T> inline constexpr bool is_bool_vector = false;
template <int N> inline constexpr bool is_bool_vector<bool_vector<N>> = true;

// `from` with elements E, as a vector or, of one lane, as a scalar; bool lanes are 0 and 1.
template <class E, class A> MSL_INLINE constexpr auto _lanes_as(A from) {
    constexpr int n = lanes_of<A>;
    if constexpr (n == 1)
        return static_cast<E>(from);
    else if constexpr (is_same_v<A, vec<E, n>>)
        return from;
    else if constexpr (is_same_v<A, packed_vector<bfloat, n>>)
        return __builtin_convertvector(from.unpacked().unpacked(), vec<E, n>);
    else if constexpr (is_same_v<A, bool_vector<n>> || is_same_v<A, bfloat_vector<n>> ||
                       is_same_v<A, packed_vector<element_of<A>, n>>)
        return __builtin_convertvector(from.unpacked(), vec<E, n>);
    else
        return __builtin_convertvector(from, vec<E, n>);
}

template <class E, class A, class B> MSL_INLINE constexpr auto _join(A a, B b) {
    constexpr int x = lanes_of<A>, y = lanes_of<B>;
    if constexpr (x == 1 && y == 1)
        return vec<E, 2>{a, b};
    else if constexpr (x == 1 && y == 2)
        return __builtin_shufflevector(b, vec<E, 2>(a), 2, 0, 1);
    else if constexpr (x == 1)
        return __builtin_shufflevector(b, vec<E, 3>(a), 3, 0, 1, 2);
    else if constexpr (x == 2 && y == 1)
        return __builtin_shufflevector(a, vec<E, 2>(b), 0, 1, 2);
    else if constexpr (x == 2)
        return __builtin_shufflevector(a, b, 0, 1, 2, 3);
    else
        return __builtin_shufflevector(a, vec<E, 3>(b), 0, 1, 2, 3);
}

template <class E, class A, class B, class C> MSL_INLINE constexpr auto _join(A a, B b, C c) {
    constexpr int x = lanes_of<A>, y = lanes_of<B>, z = lanes_of<C>;
    if constexpr (x == 1 && y == 1 && z == 1)
        return vec<E, 3>{a, b, c};
    else if constexpr (x == 2)
        return __builtin_shufflevector(a, vec<E, 2>{b, c}, 0, 1, 2, 3);
    else if constexpr (y == 2)
        return __builtin_shufflevector(b, vec<E, 2>{a, c}, 2, 0, 1, 3);
    else
        return __builtin_shufflevector(c, vec<E, 2>{a, b}, 2, 3, 0, 1);
}

template <class E> MSL_INLINE constexpr vec<E, 4> _join(E a, E b, E c, E d) { return {a, b, c, d}; }

// The first n lanes, of more than n.
template <int n, class L> MSL_INLINE constexpr auto _first_lanes(L lanes) {
    if constexpr (n == 2)
        return __builtin_shufflevector(lanes, lanes, 0, 1);
    else
        return __builtin_shufflevector(lanes, lanes, 0, 1, 2);
}

// The vector V with the given lanes.
template <class V, class L> MSL_INLINE constexpr V _from_lanes(L lanes) {
    if constexpr (is_bool_vector<V>)
        return V::from_bits(lanes);
    else
        return V(lanes);
}

// The element type in which lanes are moved: bytes for bool, float for bfloat.
template <class V> using lane_of =
    conditional_t<is_same_v<element_of<V>, bool>, uchar,
                  conditional_t<is_same_v<element_of<V>, bfloat>, float, element_of<V>>>;
template <class V, class A> MSL_INLINE constexpr auto _lanes_for(A a) {
    if constexpr (is_same_v<element_of<V>, bool> && lanes_of<A> == 1)
        return static_cast<uchar>(static_cast<bool>(a));
    else if constexpr (is_same_v<element_of<V>, bool> && !is_bool_vector<A>)
        return bool_vector<lanes_of<A>>(_lanes_as<element_of<A>>(a)).unpacked();
    else
        return _lanes_as<lane_of<V>>(a);
}

} // namespace metal

#define MSL_COUNT(given)                                                                           \
    __attribute__((diagnose_if(metal::lanes_of<V> == 2 && (given) != 2,                            \
                               "a vector of 2 components is made from 1 or 2 components",          \
                               "error"),                                                           \
                   diagnose_if(metal::lanes_of<V> == 3 && (given) != 3,                            \
                               "a vector of 3 components is made from 1 or 3 components",          \
                               "error"),                                                           \
                   diagnose_if(metal::lanes_of<V> == 4 && (given) != 4,                            \
                               "a vector of 4 components is made from 1 or 4 components",          \
                               "error")))

template <class V> MSL_INLINE constexpr V msl_make() { return V(); }

// Of a longer vector, its first lanes.
template <class V, class A>
MSL_INLINE constexpr V msl_make(A a)
    MSL_COUNT((metal::lanes_of<A> == 1 || metal::lanes_of<A> > metal::lanes_of<V> ||
                       metal::gives_itself_as<V, A>
                   ? metal::lanes_of<V>
                   : metal::given_lanes<A>)) {
    if constexpr (metal::lanes_of<V> < 2 && !__is_constructible(V, A))
        return V{a}; // a record without constructors
    else if constexpr (metal::lanes_of<V> < 2 || metal::is_same_v<V, A>)
        return V(a);
    else if constexpr (metal::gives_itself_as<V, A>)
        return a;
    else if constexpr (metal::lanes_of<A> == 1)
        return V(static_cast<metal::element_of<V>>(a));
    else if constexpr (metal::lanes_of<A> == metal::lanes_of<V>)
        return metal::_from_lanes<V>(metal::_lanes_for<V>(a));
    else if constexpr (metal::lanes_of<A> > metal::lanes_of<V>)
        return metal::_from_lanes<V>(
            metal::_first_lanes<metal::lanes_of<V>>(metal::_lanes_for<V>(a)));
    else
        return V();
}

template <class V, class A, class B>
MSL_INLINE constexpr V msl_make(A a, B b)
    MSL_COUNT(metal::given_lanes<A> + metal::given_lanes<B>) {
    using namespace metal;
    if constexpr (lanes_of<V> < 2)
        return V{a, b};
    else if constexpr (given_lanes<A> + given_lanes<B> == lanes_of<V>)
        return _from_lanes<V>(_join<lane_of<V>>(_lanes_for<V>(a), _lanes_for<V>(b)));
    else
        return V();
}

template <class V, class A, class B, class C>
MSL_INLINE constexpr V msl_make(A a, B b, C c)
    MSL_COUNT(metal::given_lanes<A> + metal::given_lanes<B> + metal::given_lanes<C>) {
    using namespace metal;
    if constexpr (lanes_of<V> < 2)
        return V{a, b, c};
    else if constexpr (given_lanes<A> + given_lanes<B> + given_lanes<C> == lanes_of<V>)
        return _from_lanes<V>(_join<lane_of<V>>(_lanes_for<V>(a), _lanes_for<V>(b), _lanes_for<V>(c)));
    else
        return V();
}

template <class V, class A, class B, class C, class D, class... Rest>
MSL_INLINE constexpr V msl_make(A a, B b, C c, D d, Rest... rest)
    MSL_COUNT((0 + ... + metal::given_lanes<Rest>) + metal::given_lanes<A> +
              metal::given_lanes<B> + metal::given_lanes<C> + metal::given_lanes<D>) {
    using namespace metal;
    if constexpr (lanes_of<V> < 2)
        return V{a, b, c, d, rest...};
    else if constexpr (sizeof...(Rest) == 0 && lanes_of<V> == 4 &&
                       given_lanes<A> * given_lanes<B> * given_lanes<C> * given_lanes<D> == 1)
        return _from_lanes<V>(_join<lane_of<V>>(_lanes_for<V>(a), _lanes_for<V>(b), _lanes_for<V>(c),
                                              _lanes_for<V>(d)));
    else
        return V();
}

#undef MSL_COUNT

namespace metal {

// Metal Shading Language 3.1, 2.19.
/** The bits of a value as another type of the same size. */
template <class To, class From>
MSL_INLINE constexpr To as_type(From from)
    __attribute__((diagnose_if(sizeof(To) != sizeof(From),
                               "as_type requires types of the same size", "error"))) {
    if constexpr (sizeof(To) == sizeof(From))
        return __builtin_bit_cast(To, from);
    else
        return To();
}

// References to components, which the front end makes of `thread float& x = v.x`.
template <class T> inline constexpr bool _has_lanes = false;
template <class T> inline constexpr bool _has_lanes<T&> = _has_lanes<T>;
template <class T> inline constexpr bool _has_lanes<const T> = _has_lanes<T>;
template <class T, int N>
inline constexpr bool _has_lanes<T __attribute__((ext_vector_type(N)))> = true;
template <class T, int N> MSL_INLINE T& _component(vec<T, N>& whole, int lane) {
    return ((T*)&whole)[lane];
}
template <class T, int N> MSL_INLINE const T& _component(const vec<T, N>& whole, int lane) {
    return ((const T*)&whole)[lane];
}

} // namespace metal

using metal::as_type;
