// Functions of SIMD-groups and quad-groups (Metal Shading Language 3.1, 6.9.2 and 6.9.3). Narrow
// values are widened to 32 bits. A lane without a partner keeps its value.
#pragma once

#include "bool_vectors.h"
#include "compute.h"

namespace metal {

template <class E>
using _simd_element = conditional_t<
    is_same_v<E, half>, float,
    conditional_t<sizeof(E) < 4, conditional_t<is_signed_v<E>, int, uint>, E>>;
template <class E, int n> struct _simd_shape { typedef vec<E, n> type; };
template <class E> struct _simd_shape<E, 1> { typedef E type; };
template <class T> using _simd_wide = typename _simd_shape<_simd_element<element_of<T>>, lanes_of<T>>::type;

template <class T> MSL_INLINE _simd_wide<T> _simd_widened(T x) {
    return _lanes_as<_simd_element<element_of<T>>>(x);
}
template <class T> MSL_INLINE T _simd_narrowed(_simd_wide<T> x) { return _lanes_as<element_of<T>>(x); }

#define MSL_SIMD_CALL(name, T, suffix)                                                             \
    __attribute__((convergent)) T _simd_##name(T) asm("msl.simd_" #name "." suffix);
#define MSL_SIMD_CALLS(T, suffix)                                                                  \
    MSL_SIMD_CALL(reduce_add, T, suffix) MSL_SIMD_CALL(reduce_mul, T, suffix)                      \
    MSL_SIMD_CALL(reduce_min, T, suffix) MSL_SIMD_CALL(reduce_max, T, suffix)                      \
    MSL_SIMD_CALL(inclusive_add, T, suffix) MSL_SIMD_CALL(inclusive_mul, T, suffix)                \
    MSL_SIMD_CALL(exclusive_add, T, suffix) MSL_SIMD_CALL(exclusive_mul, T, suffix)                \
    __attribute__((convergent)) T _simd_shuffle(T, uint) asm("msl.simd_shuffle." suffix);
#define MSL_SIMD_INTEGER(T, suffix)                                                                \
    MSL_SIMD_CALLS(T, suffix)                                                                      \
    MSL_SIMD_CALL(reduce_and, T, suffix) MSL_SIMD_CALL(reduce_or, T, suffix)                       \
    MSL_SIMD_CALL(reduce_xor, T, suffix)
#define MSL_SIMD_SHAPES(M, T, suffix)                                                              \
    M(T, suffix) M(T##2, suffix "x2") M(T##3, suffix "x3") M(T##4, suffix "x4")
MSL_SIMD_SHAPES(MSL_SIMD_INTEGER, int, "s32") MSL_SIMD_SHAPES(MSL_SIMD_INTEGER, uint, "u32")
MSL_SIMD_SHAPES(MSL_SIMD_INTEGER, long, "s64") MSL_SIMD_SHAPES(MSL_SIMD_INTEGER, ulong, "u64")
MSL_SIMD_SHAPES(MSL_SIMD_CALLS, float, "f32")
#undef MSL_SIMD_SHAPES
#undef MSL_SIMD_INTEGER
#undef MSL_SIMD_CALLS
#undef MSL_SIMD_CALL

__attribute__((convergent)) uint _simd_lane() asm("msl.simd_lane.1");
// The same; the program then needs SIMD-groups of 8 lanes.
__attribute__((convergent)) uint _simd_matrix_lane() asm("msl.simd_matrix_lane.1");
__attribute__((convergent)) uint _simd_size() asm("msl.simd_size.1");
__attribute__((convergent)) bool _simd_elect() asm("msl.simd_elect.1");
__attribute__((convergent)) bool _simd_all(bool) asm("msl.simd_all.1");
__attribute__((convergent)) bool _simd_any(bool) asm("msl.simd_any.1");
__attribute__((convergent)) uint4 _simd_ballot(bool) asm("msl.simd_ballot.1");

#define MSL_SIMD_SAME(name, call)                                                                  \
    template <class T> MSL_CONVERGENT T simd_##name(T x) {                                         \
        return _simd_narrowed<T>(_simd_##call(_simd_widened(x)));                                  \
    }
/** simd_sum: The sum of x over the active threads of the SIMD-group. */
MSL_SIMD_SAME(sum, reduce_add)
/** simd_product: The product of x over the active threads of the SIMD-group. */
MSL_SIMD_SAME(product, reduce_mul)
/** simd_min: The least x over the active threads of the SIMD-group. */
MSL_SIMD_SAME(min, reduce_min)
/** simd_max: The greatest x over the active threads of the SIMD-group. */
MSL_SIMD_SAME(max, reduce_max)
/** simd_and: The bits that are 1 in every x over the active threads of the SIMD-group. */
MSL_SIMD_SAME(and, reduce_and)
/** simd_or: The bits that are 1 in some x over the active threads of the SIMD-group. */
MSL_SIMD_SAME(or, reduce_or)
/** simd_xor: The exclusive OR of the bits of x over the active threads of the SIMD-group. */
MSL_SIMD_SAME(xor, reduce_xor)
/** simd_prefix_inclusive_sum: The sum of x over the threads up to this one in the SIMD-group. */
MSL_SIMD_SAME(prefix_inclusive_sum, inclusive_add)
/** simd_prefix_inclusive_product: The product of x over the threads up to this one in the
    SIMD-group. */
MSL_SIMD_SAME(prefix_inclusive_product, inclusive_mul)
/** simd_prefix_exclusive_sum: The sum of x over the threads before this one in the SIMD-group. */
MSL_SIMD_SAME(prefix_exclusive_sum, exclusive_add)
/** simd_prefix_exclusive_product: The product of x over the threads before this one in the
    SIMD-group. */
MSL_SIMD_SAME(prefix_exclusive_product, exclusive_mul)
#undef MSL_SIMD_SAME

/** simd_shuffle: The value of the thread with the index lane in the SIMD-group. */
template <class T> MSL_CONVERGENT T simd_shuffle(T x, ushort lane) {
    return _simd_narrowed<T>(_simd_shuffle(_simd_widened(x), lane));
}
/** simd_broadcast: The value of the thread with the index lane, for all threads of the SIMD-group.
    */
template <class T> MSL_CONVERGENT T simd_broadcast(T x, ushort lane) { return simd_shuffle(x, lane); }

// `group` is the number of lanes in a group: a SIMD-group, a quad or `modulo` lanes.
template <class T> MSL_CONVERGENT T _shuffle_by(T x, int delta, uint group) {
    const uint lane = _simd_lane(), first = lane - lane % group;
    const uint to = lane + uint(delta) - first;
    return simd_shuffle(x, ushort(to < group ? first + to : lane));
}
template <class T> MSL_CONVERGENT T _rotate_by(T x, uint delta, uint group) {
    const uint lane = _simd_lane(), first = lane - lane % group;
    return simd_shuffle(x, ushort(first + (lane - first + delta % group) % group));
}
template <class T> MSL_CONVERGENT T _fill_by(T x, T filling, int delta, uint group) {
    const uint lane = _simd_lane(), first = lane - lane % group;
    const uint to = lane + uint(delta) - first;
    const T inside = simd_shuffle(x, ushort(first + to % group));
    const uint around = delta < 0 ? to + group : to - group;
    const T outside = simd_shuffle(filling, ushort(first + around % group));
    return to < group ? inside : outside;
}

// One bit for each thread: 1 if the condition is true there.
class simd_vote {
  public:
    typedef ulong vote_t;
    simd_vote() = default;
    MSL_INLINE explicit simd_vote(vote_t all) : bits(uint2{uint(all), uint(all >> 32)}) {}
    MSL_INLINE explicit simd_vote(uint2 words) : bits(words) {}
    MSL_INLINE explicit operator vote_t() const { return vote_t(bits.y) << 32 | bits.x; }
    MSL_CONVERGENT bool all() const { return vote_t(*this) == ~vote_t(0) >> (64 - _simd_size()); }
    MSL_INLINE bool any() const { return (bits.x | bits.y) != 0; }

  private:
    uint2 bits;
};
class quad_vote {
  public:
    typedef ushort vote_t;
    quad_vote() = default;
    MSL_INLINE explicit quad_vote(vote_t all) : bits(all & 15) {}
    MSL_INLINE explicit operator vote_t() const { return bits; }
    MSL_INLINE bool all() const { return bits == 15; }
    MSL_INLINE bool any() const { return bits != 0; }

  private:
    vote_t bits;
};

/** simd_all: Whether x is true in all threads of the SIMD-group. */
MSL_CONVERGENT bool simd_all(bool x) { return _simd_all(x); }
/** simd_any: Whether x is true in a thread of the SIMD-group. */
MSL_CONVERGENT bool simd_any(bool x) { return _simd_any(x); }
/** simd_is_first: Whether this is the first active thread of the SIMD-group. */
MSL_CONVERGENT bool simd_is_first() { return _simd_elect(); }
/** simd_ballot: For each thread of the SIMD-group, whether x is true. */
MSL_CONVERGENT simd_vote simd_ballot(bool x) { return simd_vote(_simd_ballot(x).xy); }
/** simd_active_threads_mask: The active threads of the SIMD-group. */
MSL_CONVERGENT simd_vote simd_active_threads_mask() { return simd_ballot(true); }

// The bits of the active threads of this quad for which x is true.
MSL_CONVERGENT uint _quad_ballot(bool x) {
    const uint lane = _simd_lane() & ~3u;
    return _simd_ballot(x)[lane / 32] >> lane % 32 & 15;
}
/** quad_all: Whether x is true in all threads of the quad. */
MSL_CONVERGENT bool quad_all(bool x) { return _quad_ballot(!x) == 0; }
/** quad_any: Whether x is true in a thread of the quad. */
MSL_CONVERGENT bool quad_any(bool x) { return _quad_ballot(x) != 0; }
/** quad_ballot: For each thread of the quad, whether x is true. */
MSL_CONVERGENT quad_vote quad_ballot(bool x) { return quad_vote(ushort(_quad_ballot(x))); }
/** quad_active_threads_mask: The active threads of the quad. */
MSL_CONVERGENT quad_vote quad_active_threads_mask() { return quad_ballot(true); }
/** quad_is_first: Whether this is the first active thread of the quad. */
MSL_CONVERGENT bool quad_is_first() { return (_quad_ballot(true) & ((1u << (_simd_lane() & 3)) - 1)) == 0; }
/** quad_shuffle: The value of the thread with the index lane in the quad. */
template <class T> MSL_CONVERGENT T quad_shuffle(T x, ushort lane) {
    return simd_shuffle(x, ushort((_simd_lane() & ~3u) + (lane & 3)));
}
/** quad_broadcast: The value of the thread with the index lane, for all threads of the quad. */
template <class T> MSL_CONVERGENT T quad_broadcast(T x, ushort lane) { return quad_shuffle(x, lane); }

// The value of the first active thread.
/** simd_broadcast_first: The value of the first active thread of the SIMD-group. */
template <class T> MSL_CONVERGENT T simd_broadcast_first(T x) {
    const uint4 active = _simd_ballot(true);
    const uint first = active.x ? uint(__builtin_ctz(active.x)) : 32 + uint(__builtin_ctz(active.y));
    return simd_shuffle(x, ushort(first));
}
/** quad_broadcast_first: The value of the first active thread of the quad. */
template <class T> MSL_CONVERGENT T quad_broadcast_first(T x) {
    return quad_shuffle(x, ushort(__builtin_ctz(_quad_ballot(true))));
}

#define MSL_SHUFFLES(kind, group)                                                                  \
    template <class T> MSL_CONVERGENT T kind##_shuffle_xor(T x, ushort mask) {                     \
        return kind##_shuffle(x, ushort(_simd_lane() % (group) ^ mask));                           \
    }                                                                                              \
    template <class T> MSL_CONVERGENT T kind##_shuffle_up(T x, ushort delta) {                     \
        return _shuffle_by(x, -int(delta), group);                                                 \
    }                                                                                              \
    template <class T> MSL_CONVERGENT T kind##_shuffle_down(T x, ushort delta) {                   \
        return _shuffle_by(x, int(delta), group);                                                  \
    }                                                                                              \
    template <class T> MSL_CONVERGENT T kind##_shuffle_rotate_up(T x, ushort delta) {              \
        return _rotate_by(x, (group) - delta % (group), group);                                    \
    }                                                                                              \
    template <class T> MSL_CONVERGENT T kind##_shuffle_rotate_down(T x, ushort delta) {            \
        return _rotate_by(x, delta, group);                                                        \
    }                                                                                              \
    template <class T> MSL_CONVERGENT T kind##_shuffle_and_fill_up(T x, T filling, ushort delta) { \
        return _fill_by(x, filling, -int(delta), group);                                           \
    }                                                                                              \
    template <class T>                                                                             \
    MSL_CONVERGENT T kind##_shuffle_and_fill_down(T x, T filling, ushort delta) {                  \
        return _fill_by(x, filling, int(delta), group);                                            \
    }                                                                                              \
    template <class T>                                                                             \
    MSL_CONVERGENT T kind##_shuffle_and_fill_up(T x, T filling, ushort delta, ushort modulo) {     \
        return _fill_by(x, filling, -int(delta), modulo);                                          \
    }                                                                                              \
    template <class T>                                                                             \
    MSL_CONVERGENT T kind##_shuffle_and_fill_down(T x, T filling, ushort delta, ushort modulo) {   \
        return _fill_by(x, filling, int(delta), modulo);                                           \
    }
/** simd_shuffle_xor: The value of the thread whose index is this one's with the bits of mask
    changed. */
/** simd_shuffle_up: The value of the thread delta before this one. */
/** simd_shuffle_down: The value of the thread delta after this one. */
/** simd_shuffle_rotate_up: The value of the thread delta before this one, around the ends of the
    group. */
/** simd_shuffle_rotate_down: The value of the thread delta after this one, around the ends of the
    group. */
/** simd_shuffle_and_fill_up: The value of the thread delta before this one, or of filling where
    no such thread exists. */
/** simd_shuffle_and_fill_down: The value of the thread delta after this one, or of filling where
    no such thread exists. */
MSL_SHUFFLES(simd, _simd_size())
/** quad_shuffle_xor: The value of the thread whose index is this one's with the bits of mask
    changed. */
/** quad_shuffle_up: The value of the thread delta before this one. */
/** quad_shuffle_down: The value of the thread delta after this one. */
/** quad_shuffle_rotate_up: The value of the thread delta before this one, around the ends of the
    group. */
/** quad_shuffle_rotate_down: The value of the thread delta after this one, around the ends of the
    group. */
/** quad_shuffle_and_fill_up: The value of the thread delta before this one, or of filling where
    no such thread exists. */
/** quad_shuffle_and_fill_down: The value of the thread delta after this one, or of filling where
    no such thread exists. */
MSL_SHUFFLES(quad, 4u)
#undef MSL_SHUFFLES

// Reductions over the active threads of a quad, by shuffles: not every device has clustered
// operations.
#define MSL_QUAD(name, join)                                                                       \
    template <class T> MSL_CONVERGENT T quad_##name(T x) {                                         \
        const uint active = _quad_ballot(true), self = _simd_lane() & 3;                           \
        T result = x;                                                                              \
        _Pragma("clang loop unroll(full)") for (uint n = 1; n < 4; ++n) {                          \
            const uint lane = self ^ n;                                                            \
            const T b = quad_shuffle(x, ushort(lane)), a = result;                                 \
            result = (active >> lane & 1) ? T(join) : a;                                           \
        }                                                                                          \
        return result;                                                                             \
    }
/** quad_sum: The sum of x over the active threads of the quad. */
MSL_QUAD(sum, a + b)
/** quad_product: The product of x over the active threads of the quad. */
MSL_QUAD(product, a * b)
/** quad_min: The least x over the active threads of the quad. */
MSL_QUAD(min, __builtin_elementwise_min(a, b))
/** quad_max: The greatest x over the active threads of the quad. */
MSL_QUAD(max, __builtin_elementwise_max(a, b))
/** quad_and: The bits that are 1 in every x over the active threads of the quad. */
MSL_QUAD(and, a & b)
/** quad_or: The bits that are 1 in some x over the active threads of the quad. */
MSL_QUAD(or, a | b)
/** quad_xor: The exclusive OR of the bits of x over the active threads of the quad. */
MSL_QUAD(xor, a ^ b)
#undef MSL_QUAD

#define MSL_QUAD_PREFIX(name, join, start, isInclusive)                                            \
    template <class T> MSL_CONVERGENT T quad_prefix_##name(T x) {                                  \
        const uint active = _quad_ballot(true), self = _simd_lane() & 3;                           \
        T a = T(start);                                                                            \
        _Pragma("clang loop unroll(full)") for (uint n = 0; n < 4; ++n) {                          \
            const T b = quad_shuffle(x, ushort(n));                                                \
            const bool is_before = n < self || (isInclusive && n == self);                         \
            a = is_before && (active >> n & 1) ? T(join) : a;                                      \
        }                                                                                          \
        return a;                                                                                  \
    }
/** quad_prefix_inclusive_sum: The sum of x over the threads up to this one in the quad. */
MSL_QUAD_PREFIX(inclusive_sum, a + b, 0, true)
/** quad_prefix_exclusive_sum: The sum of x over the threads before this one in the quad. */
MSL_QUAD_PREFIX(exclusive_sum, a + b, 0, false)
/** quad_prefix_inclusive_product: The product of x over the threads up to this one in the quad. */
MSL_QUAD_PREFIX(inclusive_product, a * b, 1, true)
/** quad_prefix_exclusive_product: The product of x over the threads before this one in the quad. */
MSL_QUAD_PREFIX(exclusive_product, a * b, 1, false)
#undef MSL_QUAD_PREFIX

} // namespace metal
