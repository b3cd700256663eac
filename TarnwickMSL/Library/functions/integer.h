// The integer functions of list.h (Metal Shading Language 3.1, 6.3).
#pragma once

#include "list.h"
#include "overloads.h"

namespace metal {

#define MSL_BODY(T)                                                                                \
    MSL_INLINE T##2 _magnitude(T##2 x) { return __builtin_elementwise_abs(x); }                    \
    MSL_INLINE T##3 _magnitude(T##3 x) { return __builtin_elementwise_abs(x); }                    \
    MSL_INLINE T##4 _magnitude(T##4 x) { return __builtin_elementwise_abs(x); }
MSL_BODY(char) MSL_BODY(short) MSL_BODY(int) MSL_BODY(long)
#undef MSL_BODY
#define MSL_BODY(T)                                                                                \
    MSL_INLINE T##2 _magnitude(T##2 x) { return x; }                                               \
    MSL_INLINE T##3 _magnitude(T##3 x) { return x; }                                               \
    MSL_INLINE T##4 _magnitude(T##4 x) { return x; }
MSL_BODY(uchar) MSL_BODY(ushort) MSL_BODY(uint) MSL_BODY(ulong)
#undef MSL_BODY

// mulhi and madsat of scalars. Products of narrow types fit a wider type; 64 bits are multiplied in
// halves.
#define MSL_BODY(T, Wide, W, least, most)                                                          \
    MSL_INLINE T _mulhi(T x, T y) { return static_cast<T>((Wide(x) * Wide(y)) >> W); }              \
    MSL_INLINE T _madsat(T x, T y, T z) {                                                           \
        Wide found = Wide(x) * Wide(y) + Wide(z);                                                  \
        return static_cast<T>(found < Wide(least) ? Wide(least)                                    \
                                                  : (found > Wide(most) ? Wide(most) : found));    \
    }
MSL_BODY(char, int, 8, SCHAR_MIN, SCHAR_MAX)
MSL_BODY(uchar, uint, 8, 0, UCHAR_MAX)
MSL_BODY(short, int, 16, SHRT_MIN, SHRT_MAX)
MSL_BODY(ushort, uint, 16, 0, USHRT_MAX)
MSL_BODY(int, long, 32, INT_MIN, INT_MAX)
MSL_BODY(uint, ulong, 32, 0, UINT_MAX)
#undef MSL_BODY
MSL_INLINE ulong _mulhi(ulong x, ulong y) {
    ulong x1 = x >> 32, x0 = x & UINT_MAX, y1 = y >> 32, y0 = y & UINT_MAX;
    ulong middle = x1 * y0 + ((x0 * y0) >> 32);
    return x1 * y1 + (middle >> 32) + ((x0 * y1 + (middle & UINT_MAX)) >> 32);
}
MSL_INLINE long _mulhi(long x, long y) {
    ulong found = _mulhi(static_cast<ulong>(x), static_cast<ulong>(y));
    return static_cast<long>(found - (x < 0 ? static_cast<ulong>(y) : 0ul) -
                             (y < 0 ? static_cast<ulong>(x) : 0ul));
}
MSL_INLINE ulong _madsat(ulong x, ulong y, ulong z) {
    ulong low = x * y + z;
    bool carry = low < z;
    return _mulhi(x, y) != 0ul || carry ? ULONG_MAX : low;
}
MSL_INLINE long _madsat(long x, long y, long z) {
    ulong low = static_cast<ulong>(x) * static_cast<ulong>(y) + static_cast<ulong>(z);
    ulong carry = low < static_cast<ulong>(z) ? 1ul : 0ul;
    long high = static_cast<long>(static_cast<ulong>(_mulhi(x, y)) +
                                  static_cast<ulong>(z < 0 ? -1l : 0l) + carry);
    long found = static_cast<long>(low);
    return high == (found >> 63) ? found : (high < 0 ? LONG_MIN : LONG_MAX);
}

#define MSL_BODY(T, U, S, W) MSL_INTEGER_SCALAR_FUNCTIONS(MSL_DEFINE, T, U, W)
MSL_EACH_INTEGER_SCALAR(MSL_BODY)
#undef MSL_BODY
#define MSL_BODY(T, U, S, W) MSL_INTEGER_VECTOR_FUNCTIONS(MSL_DEFINE, T, U, W)
MSL_EACH_INTEGER_VECTOR(MSL_BODY)
#undef MSL_BODY
#define MSL_BODY(T, U, S, W) MSL_INTEGER_FUNCTIONS(MSL_DEFINE, T)
MSL_EACH_INTEGER(MSL_BODY)
#undef MSL_BODY

#define MSL_ROW(T, name, arguments, ...)                                                           \
    MSL_DEFINE(T, T, name, arguments, __VA_ARGS__)                                                 \
    MSL_LANES(T, T, T, name, arguments)
#define MSL_BODY(T, U, S, W) MSL_INTEGER_LANE_FUNCTIONS(MSL_ROW, T, U, W)
MSL_EACH_INTEGER_SCALAR(MSL_BODY)
#undef MSL_BODY
#undef MSL_ROW

#define MSL_BODY(T) MSL_24_BIT_FUNCTIONS(MSL_DEFINE, T)
MSL_BODY(int) MSL_BODY(int2) MSL_BODY(int3) MSL_BODY(int4)
MSL_BODY(uint) MSL_BODY(uint2) MSL_BODY(uint3) MSL_BODY(uint4)
#undef MSL_BODY

} // namespace metal
