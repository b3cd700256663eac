// MSL_RELATIONAL_FUNCTIONS of list.h; any, all and select (Metal Shading Language 3.1, 6.2).
#pragma once

#include "common.h"

namespace metal {

/** Whether a component is true. */
MSL_INLINE constexpr bool any(bool x) { return x; }
/** Whether all components are true. */
MSL_INLINE constexpr bool all(bool x) { return x; }
MSL_INLINE bool any(bool2 x) { return (x.bits.x | x.bits.y) != 0; }
MSL_INLINE bool any(bool3 x) { return (x.bits.x | x.bits.y | x.bits.z) != 0; }
MSL_INLINE bool any(bool4 x) { return (x.bits.x | x.bits.y | x.bits.z | x.bits.w) != 0; }
MSL_INLINE bool all(bool2 x) { return (x.bits.x & x.bits.y) != 0; }
MSL_INLINE bool all(bool3 x) { return (x.bits.x & x.bits.y & x.bits.z) != 0; }
MSL_INLINE bool all(bool4 x) { return (x.bits.x & x.bits.y & x.bits.z & x.bits.w) != 0; }

#define MSL_BODY(T, I, B) MSL_RELATIONAL_FUNCTIONS(MSL_DEFINE, T, I, B)
MSL_EACH_FLOATING(MSL_BODY)
#undef MSL_BODY

// select(x, y, c) is y where c is true.
#define MSL_BODY(T)                                                                                \
    /** y where c is true, otherwise x, for each component. */                                     \
    MSL_INLINE constexpr T select(T x, T y, bool c) { return c ? y : x; }
MSL_BODY(half) MSL_BODY(float) MSL_BODY(bool) MSL_BODY(char) MSL_BODY(uchar) MSL_BODY(short)
MSL_BODY(ushort) MSL_BODY(int) MSL_BODY(uint) MSL_BODY(long) MSL_BODY(ulong)
#undef MSL_BODY
#define MSL_BODY(T, I, N)                                                                          \
    MSL_INLINE T##N select(T##N x, T##N y, bool##N c) {                                            \
        return __builtin_convertvector(c.bits, I##N) != I##N(0) ? y : x;                           \
    }
#define MSL_EACH(T, I) MSL_BODY(T, I, 2) MSL_BODY(T, I, 3) MSL_BODY(T, I, 4)
MSL_EACH(half, short) MSL_EACH(float, int) MSL_EACH(char, char) MSL_EACH(uchar, char)
MSL_EACH(short, short) MSL_EACH(ushort, short) MSL_EACH(int, int) MSL_EACH(uint, int)
MSL_EACH(long, long) MSL_EACH(ulong, long)
#undef MSL_EACH
#undef MSL_BODY
#define MSL_BODY(N)                                                                                \
    MSL_INLINE bool##N select(bool##N x, bool##N y, bool##N c) {                                   \
        return bool##N::from_bits((x.bits & ~c.bits) | (y.bits & c.bits));                         \
    }
MSL_BODY(2) MSL_BODY(3) MSL_BODY(4)
#undef MSL_BODY

} // namespace metal
