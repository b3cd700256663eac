// Vectors of bool (Metal Shading Language 3.1, 2.2): one byte a lane, true is 1. Comparisons of
// other vectors give integer masks, as in Clang; these convert implicitly.
#pragma once

#include "construct.h"
#include "swizzles.h"

namespace metal {

// The components by name, in one union with the lanes.
template <int N> struct bool_lanes;
template <> struct bool_lanes<2> {
    union {
        uchar2 bits;
        struct { bool x, y; };
        struct { bool r, g; };
    };
};
template <> struct bool_lanes<3> {
    union {
        uchar3 bits;
        struct { bool x, y, z; };
        struct { bool r, g, b; };
    };
};
template <> struct bool_lanes<4> {
    union {
        uchar4 bits;
        struct { bool x, y, z, w; };
        struct { bool r, g, b, a; };
    };
};

// The class is a template parameter, so that Clang looks at the swizzles after it is complete.
template <int N, template <int> class V> struct bool_swizzles;
#define MSL_BODY(N)                                                                                \
    template <template <int> class V> struct bool_swizzles<N, V> : bool_lanes<N> {                 \
        MSL_INLINE bool lane(int i) const { return bits[i]; }                                      \
        MSL_INLINE void set_lane(int i, bool value) { bits[i] = value; }                           \
        MSL_SWIZZLES_##N(V)                                                                        \
    };
MSL_BODY(2) MSL_BODY(3) MSL_BODY(4)
#undef MSL_BODY

template <int N> struct bool_vector : bool_swizzles<N, bool_vector> {
    typedef vec<uchar, N> Bits;
    using bool_swizzles<N, metal::bool_vector>::bits;

    bool_vector() = default;
    MSL_INLINE bool_vector(bool every) { bits = Bits(uchar(every)); }
    template <class T> MSL_INLINE bool_vector(vec<T, N> mask) {
        bits = __builtin_convertvector(mask != T(0), Bits) & uchar(1);
    }
    template <int M, class = enable_if_t<(M > N)>> MSL_INLINE explicit bool_vector(bool_vector<M> longer) {
        bits = _first_lanes<N>(longer.bits);
    }
    template <class A, class B, class... Rest> MSL_INLINE bool_vector(A a, B b, Rest... rest) {
        bits = msl_make<bool_vector<N>>(a, b, rest...).bits;
    }
    static MSL_INLINE bool_vector from_bits(Bits given) {
        bool_vector made;
        made.bits = given;
        return made;
    }

    MSL_INLINE Bits unpacked() const { return bits; }
    MSL_INLINE bool operator[](int i) const { return bits[i]; }
    MSL_INLINE bool& operator[](int i) { return reinterpret_cast<bool*>(this)[i]; }

#define MSL_BOOL_OPERATOR(op, value)                                                               \
    friend MSL_INLINE bool_vector operator op(bool_vector a, bool_vector b) {                      \
        return from_bits(value);                                                                   \
    }
    MSL_BOOL_OPERATOR(&&, a.bits & b.bits)
    MSL_BOOL_OPERATOR(||, a.bits | b.bits)
    MSL_BOOL_OPERATOR(&, a.bits & b.bits)
    MSL_BOOL_OPERATOR(|, a.bits | b.bits)
    MSL_BOOL_OPERATOR(^, a.bits ^ b.bits)
    MSL_BOOL_OPERATOR(!=, a.bits ^ b.bits)
    MSL_BOOL_OPERATOR(==, (a.bits ^ b.bits) ^ uchar(1))
#undef MSL_BOOL_OPERATOR
    MSL_INLINE bool_vector operator!() const { return from_bits(bits ^ uchar(1)); }
    MSL_INLINE bool_vector operator~() const { return from_bits(bits ^ uchar(1)); }
    MSL_INLINE bool_vector& operator&=(bool_vector b) { return bits &= b.bits, *this; }
    MSL_INLINE bool_vector& operator|=(bool_vector b) { return bits |= b.bits, *this; }
    MSL_INLINE bool_vector& operator^=(bool_vector b) { return bits ^= b.bits, *this; }
};

} // namespace metal

typedef metal::bool_vector<2> bool2;
typedef metal::bool_vector<3> bool3;
typedef metal::bool_vector<4> bool4;
namespace metal {
using ::bool2, ::bool3, ::bool4;
} // namespace metal

// Uses every implicit copy function, so that Clang defines them here, once: defining them reads the
// whole class with its swizzles.
namespace metal {
template <class V> MSL_INLINE void _copied(V given) {
    V copy = given;
    copy = given;
    copy = static_cast<V&&>(given);
    V moved = static_cast<V&&>(copy);
}
inline void _bool_vectors_copied(bool2 a, bool3 b, bool4 c) {
    _copied(a);
    _copied(b);
    _copied(c);
}
} // namespace metal
