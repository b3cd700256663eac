// Vectors of bool (Metal Shading Language 3.1, 2.2): one byte a lane, true is 1. Comparisons of
// other vectors give integer masks, Clang's way; they convert to these without being asked.
#pragma once

#include "construct.h"
#include "swizzles.h"

namespace metal {

// The components by name, in the storage that bool_vector shares with its lanes.
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

// The class of the swizzles is a parameter, so that they are looked at once it is complete.
template <int N, template <int> class V> struct bool_swizzles;
template <template <int> class V> struct bool_swizzles<2, V> : bool_lanes<2> {
    MSL_INLINE bool lane(int i) const { return bits[i]; }
    MSL_INLINE void set_lane(int i, bool value) { bits[i] = value; }
    MSL_SWIZZLES_2(V)
};
template <template <int> class V> struct bool_swizzles<3, V> : bool_lanes<3> {
    MSL_INLINE bool lane(int i) const { return bits[i]; }
    MSL_INLINE void set_lane(int i, bool value) { bits[i] = value; }
    MSL_SWIZZLES_3(V)
};
template <template <int> class V> struct bool_swizzles<4, V> : bool_lanes<4> {
    MSL_INLINE bool lane(int i) const { return bits[i]; }
    MSL_INLINE void set_lane(int i, bool value) { bits[i] = value; }
    MSL_SWIZZLES_4(V)
};

template <int N> struct bool_vector : bool_swizzles<N, bool_vector> {
    typedef vec<uchar, N> Bits;
    using bool_swizzles<N, metal::bool_vector>::bits;

    bool_vector() = default;
    MSL_INLINE bool_vector(bool every) { bits = Bits(uchar(every)); }
    template <class T> MSL_INLINE bool_vector(vec<T, N> mask) {
        bits = __builtin_convertvector(mask != T(0), Bits) & uchar(1);
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

// A use of everything that copies a class, so that Clang writes those functions here, once: to
// write them it reads all of the class, swizzles included.
namespace metal {
template <class V> MSL_INLINE void _copied(V given) {
    V copy = given;
    copy = given;
    copy = static_cast<V&&>(given);
    V moved = static_cast<V&&>(copy);
}
inline void bool_vectors_copied(bool2 a, bool3 b, bool4 c) {
    _copied(a);
    _copied(b);
    _copied(c);
}
} // namespace metal
