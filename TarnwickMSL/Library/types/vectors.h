// Vector types (Metal Shading Language 3.1, 2.2): Clang's extended vectors, which have swizzles,
// their assignment, splats and arithmetic. Vectors of bool are a class (bool_vectors.h).
#pragma once

#include "scalars.h"

#define MSL_VECTORS(T)                                                                             \
    typedef T T##2 __attribute__((ext_vector_type(2)));                                            \
    typedef T T##3 __attribute__((ext_vector_type(3)));                                            \
    typedef T T##4 __attribute__((ext_vector_type(4)));
#define MSL_ELEMENTS(M) M(char) M(uchar) M(short) M(ushort) M(int) M(uint) M(long) M(ulong) M(half) M(float)

MSL_ELEMENTS(MSL_VECTORS)
#undef MSL_VECTORS

// The types are in metal:: too.
#define MSL_NAMES(T)                                                                               \
    using ::T##2;                                                                                  \
    using ::T##3;                                                                                  \
    using ::T##4;
namespace metal {
MSL_ELEMENTS(MSL_NAMES)
using ::uchar, ::ushort, ::uint, ::ulong, ::size_t, ::ptrdiff_t;
using ::int8_t, ::uint8_t, ::int16_t, ::uint16_t, ::int32_t, ::uint32_t, ::int64_t, ::uint64_t;
} // namespace metal
#undef MSL_NAMES

namespace metal {

// Template arguments can be deduced from it: `template <class T, int N> T sum(vec<T, N>)`. The
// front end rewrites vec<bool, N> to bool_vector<N>, and vec<bfloat, N> to bfloat_vector<N>.
template <class T, int N> using vec = T __attribute__((ext_vector_type(N)));

struct bfloat;
template <int N> struct bool_vector;
template <int N> struct bfloat_vector;
template <class T, int N> struct packed_vector;
template <class T, int C, int R> struct matrix;

// The element type and the number of lanes of a type; 0 lanes if it is neither scalar nor vector.
template <class T> struct vector_traits {
    typedef T element;
    static constexpr int lanes = is_arithmetic_v<T> || is_enum_v<T> ? 1 : 0;
};
template <class T> struct vector_traits<const T> : vector_traits<T> {};
template <class T, int N> struct vector_traits<T __attribute__((ext_vector_type(N)))> {
    typedef T element;
    static constexpr int lanes = N;
};
template <int N> struct vector_traits<bool_vector<N>> {
    typedef bool element;
    static constexpr int lanes = N;
};
template <> struct vector_traits<bfloat> {
    typedef bfloat element;
    static constexpr int lanes = 1;
};
template <int N> struct vector_traits<bfloat_vector<N>> {
    typedef bfloat element;
    static constexpr int lanes = N;
};
template <class T, int N> struct vector_traits<packed_vector<T, N>> {
    typedef T element;
    static constexpr int lanes = N;
};
template <class T> inline constexpr int lanes_of = vector_traits<T>::lanes;
template <class T> using element_of = typename vector_traits<T>::element;

} // namespace metal
