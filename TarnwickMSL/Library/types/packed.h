// Packed vectors (Metal Shading Language 3.1, 2.2.3): with the alignment of one element, otherwise
// like the vector of the same name.
#pragma once

#include "bfloats.h"
#include "bool_vectors.h"
#include "construct.h"
#include "swizzles.h"

namespace metal {

template <class T, int N> struct _vector_of {
    typedef vec<T, N> type;
};
template <int N> struct _vector_of<bfloat, N> {
    typedef bfloat_vector<N> type;
};

template <class T, int N> struct packed_lanes;
template <class T> struct packed_lanes<T, 2> {
    union {
        T elements[2];
        struct { T x, y; };
        struct { T r, g; };
    };
};
template <class T> struct packed_lanes<T, 3> {
    union {
        T elements[3];
        struct { T x, y, z; };
        struct { T r, g, b; };
    };
};
template <class T> struct packed_lanes<T, 4> {
    union {
        T elements[4];
        struct { T x, y, z, w; };
        struct { T r, g, b, a; };
    };
};

template <class T, int N> struct packed_swizzles;
#define MSL_BODY(N)                                                                                \
    template <class T> struct packed_swizzles<T, N> : packed_lanes<T, N> {                         \
        template <int M> using Swizzle = typename _vector_of<T, M>::type;                                               \
        using packed_lanes<T, N>::elements;                                                        \
        MSL_INLINE T lane(int i) const { return elements[i]; }                                     \
        MSL_INLINE void set_lane(int i, T value) { elements[i] = value; }                          \
        MSL_SWIZZLES_##N(Swizzle)                                                                  \
    };
MSL_BODY(2) MSL_BODY(3) MSL_BODY(4)
#undef MSL_BODY

template <class T, int N> struct packed_vector : packed_swizzles<T, N> {
    using packed_swizzles<T, N>::elements;
    typedef typename _vector_of<T, N>::type Unpacked;

    packed_vector() = default;
    MSL_INLINE packed_vector(Unpacked v) { store(v); }
    template <class A, class B, class... Rest> MSL_INLINE packed_vector(A a, B b, Rest... rest) {
        store(msl_make<Unpacked>(a, b, rest...));
    }
    MSL_INLINE operator Unpacked() const { return unpacked(); }
    MSL_INLINE Unpacked unpacked() const {
        if constexpr (N == 2)
            return {elements[0], elements[1]};
        else if constexpr (N == 3)
            return {elements[0], elements[1], elements[2]};
        else
            return {elements[0], elements[1], elements[2], elements[3]};
    }
    MSL_INLINE void store(Unpacked v) {
        elements[0] = v[0];
        elements[1] = v[1];
        if constexpr (N > 2)
            elements[2] = v[2];
        if constexpr (N > 3)
            elements[3] = v[3];
    }

    MSL_INLINE T operator[](int i) const { return elements[i]; }
    MSL_INLINE T& operator[](int i) { return elements[i]; }

#define MSL_PACKED_OPERATOR(op)                                                                    \
    friend MSL_INLINE Unpacked operator op(packed_vector a, packed_vector b) {                     \
        return a.unpacked() op b.unpacked();                                                       \
    }                                                                                              \
    friend MSL_INLINE Unpacked operator op(packed_vector a, T b) { return a.unpacked() op b; }     \
    friend MSL_INLINE Unpacked operator op(T a, packed_vector b) { return a op b.unpacked(); }     \
    friend MSL_INLINE Unpacked operator op(packed_vector a, Unpacked b) {                          \
        return a.unpacked() op b;                                                                  \
    }                                                                                              \
    friend MSL_INLINE Unpacked operator op(Unpacked a, packed_vector b) {                          \
        return a op b.unpacked();                                                                  \
    }                                                                                              \
    MSL_INLINE packed_vector& operator op##=(Unpacked b) {                                         \
        return store(unpacked() op b), *this;                                                      \
    }
    MSL_PACKED_OPERATOR(+)
    MSL_PACKED_OPERATOR(-)
    MSL_PACKED_OPERATOR(*)
    MSL_PACKED_OPERATOR(/)
#undef MSL_PACKED_OPERATOR
    MSL_INLINE Unpacked operator-() const { return -unpacked(); }
};

} // namespace metal

#define MSL_PACKED(T)                                                                              \
    typedef metal::packed_vector<T, 2> packed_##T##2;                                              \
    typedef metal::packed_vector<T, 3> packed_##T##3;                                              \
    typedef metal::packed_vector<T, 4> packed_##T##4;
MSL_ELEMENTS(MSL_PACKED)
MSL_PACKED(bfloat)
#undef MSL_PACKED

#define MSL_NAMES(T) using ::packed_##T##2, ::packed_##T##3, ::packed_##T##4;
namespace metal {
MSL_ELEMENTS(MSL_NAMES)
MSL_NAMES(bfloat)
} // namespace metal
#undef MSL_NAMES

// Instantiates the common types here, once, rather than in every program.
namespace metal {
inline void _packed_vectors_copied(packed_float2 a, packed_float3 b, packed_float4 c, packed_half2 d,
                                  packed_half3 e, packed_half4 f) {
    _copied(a);
    _copied(b);
    _copied(c);
    _copied(d);
    _copied(e);
    _copied(f);
}
} // namespace metal
