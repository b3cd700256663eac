// bfloat and its vectors (Metal Shading Language 3.1, 2.1 and 2.2): the upper half of a float's bits.
// SPIR-V has no such type, so that they are integers in memory, and arithmetic is that of float,
// rounded to the nearest bfloat. Arithmetic of a bfloat and another number gives the other's type.
#pragma once

#include "bool_vectors.h"
#include "construct.h"
#include "swizzles.h"

namespace metal {

template <int N> MSL_INLINE constexpr vec<ushort, N> _bfloat_bits(vec<float, N> x) {
    const auto given = __builtin_bit_cast(vec<uint, N>, x);
    // To nearest, ties to even. A NaN stays one.
    const auto rounded = (given + 0x7fffu + (given >> 16 & 1u)) >> 16;
    const auto isNaN = (given & 0x7fffffffu) > 0x7f800000u;
    return __builtin_convertvector(isNaN ? given >> 16 | 0x40u : rounded, vec<ushort, N>);
}

struct bfloat {
    ushort bits;

    bfloat() = default;
    template <class A, class = enable_if_t<is_arithmetic_v<A>>> MSL_INLINE constexpr bfloat(A x) : bits() {
        const auto given = __builtin_bit_cast(uint, static_cast<float>(x));
        const bool isNaN = (given & 0x7fffffffu) > 0x7f800000u;
        bits = ushort(isNaN ? given >> 16 | 0x40u : (given + 0x7fffu + (given >> 16 & 1u)) >> 16);
    }
    MSL_INLINE constexpr operator float() const { return __builtin_bit_cast(float, uint(bits) << 16); }

#define MSL_BFLOAT_OPERATOR(op)                                                                    \
    template <class A> MSL_INLINE bfloat& operator op##=(A x) { return *this = float(*this) op x; }
    MSL_BFLOAT_OPERATOR(+)
    MSL_BFLOAT_OPERATOR(-)
    MSL_BFLOAT_OPERATOR(*)
    MSL_BFLOAT_OPERATOR(/)
#undef MSL_BFLOAT_OPERATOR
    MSL_INLINE bfloat& operator++() { return *this += 1; }
    MSL_INLINE bfloat& operator--() { return *this -= 1; }
};

// Templates, so that no other number is converted to bfloat.
template <class A> using _only_bfloat = enable_if_t<is_same_v<A, bfloat>, bfloat>;
#define MSL_BFLOAT_OPERATOR(op)                                                                    \
    template <class A> MSL_INLINE constexpr _only_bfloat<A> operator op(A a, A b) {                \
        return float(a) op float(b);                                                               \
    }
MSL_BFLOAT_OPERATOR(+)
MSL_BFLOAT_OPERATOR(-)
MSL_BFLOAT_OPERATOR(*)
MSL_BFLOAT_OPERATOR(/)
#undef MSL_BFLOAT_OPERATOR
template <class A> MSL_INLINE constexpr _only_bfloat<A> operator-(A a) { return -float(a); }

// Of a bfloat and a half, as floats: no type has the values of both but float.
template <class A, class T> using _only_half = enable_if_t<is_same_v<A, half>, T>;
#define MSL_BFLOAT_OPERATOR(T, op)                                                                 \
    template <class A> MSL_INLINE constexpr _only_half<A, T> operator op(A a, bfloat b) {          \
        return float(a) op float(b);                                                               \
    }                                                                                              \
    template <class A> MSL_INLINE constexpr _only_half<A, T> operator op(bfloat a, A b) {          \
        return float(a) op float(b);                                                               \
    }
MSL_BFLOAT_OPERATOR(float, +)
MSL_BFLOAT_OPERATOR(float, -)
MSL_BFLOAT_OPERATOR(float, *)
MSL_BFLOAT_OPERATOR(float, /)
MSL_BFLOAT_OPERATOR(bool, ==)
MSL_BFLOAT_OPERATOR(bool, !=)
MSL_BFLOAT_OPERATOR(bool, <)
MSL_BFLOAT_OPERATOR(bool, <=)
MSL_BFLOAT_OPERATOR(bool, >)
MSL_BFLOAT_OPERATOR(bool, >=)
#undef MSL_BFLOAT_OPERATOR

// Of a bfloat and a vector of floats.
template <class V, class T> using _only_floats =
    enable_if_t<is_same_v<V, vec<float, 2>> || is_same_v<V, vec<float, 3>> || is_same_v<V, vec<float, 4>>, T>;
#define MSL_BFLOAT_OPERATOR(op)                                                                    \
    template <class V> MSL_INLINE constexpr _only_floats<V, V> operator op(bfloat a, V b) {        \
        return float(a) op b;                                                                      \
    }                                                                                              \
    template <class V> MSL_INLINE constexpr _only_floats<V, V> operator op(V a, bfloat b) {        \
        return a op float(b);                                                                      \
    }
MSL_BFLOAT_OPERATOR(+)
MSL_BFLOAT_OPERATOR(-)
MSL_BFLOAT_OPERATOR(*)
MSL_BFLOAT_OPERATOR(/)
#undef MSL_BFLOAT_OPERATOR

template <int N> struct bfloat_lanes;
template <> struct bfloat_lanes<2> {
    union {
        ushort2 bits;
        struct { bfloat x, y; };
        struct { bfloat r, g; };
    };
};
template <> struct bfloat_lanes<3> {
    union {
        ushort3 bits;
        struct { bfloat x, y, z; };
        struct { bfloat r, g, b; };
    };
};
template <> struct bfloat_lanes<4> {
    union {
        ushort4 bits;
        struct { bfloat x, y, z, w; };
        struct { bfloat r, g, b, a; };
    };
};

template <int N, template <int> class V> struct bfloat_swizzles;
#define MSL_BODY(N)                                                                                \
    template <template <int> class V> struct bfloat_swizzles<N, V> : bfloat_lanes<N> {             \
        MSL_INLINE float lane(int i) const { return __builtin_bit_cast(float, uint(bits[i]) << 16); } \
        MSL_INLINE void set_lane(int i, bfloat value) { bits[i] = value.bits; }                    \
        MSL_SWIZZLES_##N(V)                                                                        \
    };
MSL_BODY(2) MSL_BODY(3) MSL_BODY(4)
#undef MSL_BODY

template <int N> struct bfloat_vector : bfloat_swizzles<N, bfloat_vector> {
    typedef vec<float, N> Floats;
    using bfloat_swizzles<N, metal::bfloat_vector>::bits;

    bfloat_vector() = default;
    MSL_INLINE bfloat_vector(bfloat every) { bits = vec<ushort, N>(every.bits); }
    template <class A, class = enable_if_t<is_arithmetic_v<A>>>
    MSL_INLINE bfloat_vector(A every) : bfloat_vector(bfloat(every)) {}
    template <class T> MSL_INLINE explicit bfloat_vector(vec<T, N> v) {
        bits = _bfloat_bits(__builtin_convertvector(v, Floats));
    }
    template <int M, class = enable_if_t<(M > N)>>
    MSL_INLINE explicit bfloat_vector(bfloat_vector<M> longer) {
        bits = _first_lanes<N>(longer.bits);
    }
    template <class A, class B, class... Rest> MSL_INLINE bfloat_vector(A a, B b, Rest... rest) {
        bits = _bfloat_bits(msl_make<Floats>(a, b, rest...));
    }

    MSL_INLINE Floats unpacked() const {
        return __builtin_bit_cast(Floats, __builtin_convertvector(bits, vec<uint, N>) << 16);
    }
    MSL_INLINE explicit operator Floats() const { return unpacked(); }
    MSL_INLINE bfloat operator[](int i) const { return __builtin_bit_cast(bfloat, bits[i]); }
    MSL_INLINE bfloat& operator[](int i) { return reinterpret_cast<bfloat*>(this)[i]; }

#define MSL_BFLOAT_OPERATOR(op)                                                                    \
    friend MSL_INLINE bfloat_vector operator op(bfloat_vector a, bfloat_vector b) {                \
        return bfloat_vector(a.unpacked() op b.unpacked());                                        \
    }                                                                                              \
    MSL_INLINE bfloat_vector& operator op##=(bfloat_vector b) { return *this = *this op b; }
    MSL_BFLOAT_OPERATOR(+)
    MSL_BFLOAT_OPERATOR(-)
    MSL_BFLOAT_OPERATOR(*)
    MSL_BFLOAT_OPERATOR(/)
#undef MSL_BFLOAT_OPERATOR
    MSL_INLINE bfloat_vector operator-() const { return bfloat_vector(-unpacked()); }
#define MSL_BFLOAT_OPERATOR(op)                                                                    \
    friend MSL_INLINE bool_vector<N> operator op(bfloat_vector a, bfloat_vector b) {               \
        return a.unpacked() op b.unpacked();                                                       \
    }
    MSL_BFLOAT_OPERATOR(==)
    MSL_BFLOAT_OPERATOR(!=)
    MSL_BFLOAT_OPERATOR(<)
    MSL_BFLOAT_OPERATOR(<=)
    MSL_BFLOAT_OPERATOR(>)
    MSL_BFLOAT_OPERATOR(>=)
#undef MSL_BFLOAT_OPERATOR
};

} // namespace metal

using metal::bfloat;
typedef metal::bfloat_vector<2> bfloat2;
typedef metal::bfloat_vector<3> bfloat3;
typedef metal::bfloat_vector<4> bfloat4;
namespace metal {
using ::bfloat2, ::bfloat3, ::bfloat4;
inline void _bfloat_vectors_copied(bfloat2 a, bfloat3 b, bfloat4 c) {
    _copied(a);
    _copied(b);
    _copied(c);
}
} // namespace metal
