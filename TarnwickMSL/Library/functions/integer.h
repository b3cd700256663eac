// Integer functions (Metal Shading Language 3.1, 6.3).
#pragma once

#include "overloads.h"

namespace metal {

// Scalars by comparison, so that they are constant expressions.
#define MSL_BODY(T, U, S, W)                                                                       \
    MSL_INLINE constexpr T min(T x, T y) { return y < x ? y : x; }                                 \
    MSL_INLINE constexpr T max(T x, T y) { return x < y ? y : x; }                                 \
    MSL_INLINE constexpr T clamp(T x, T least, T most) { return min(max(x, least), most); }        \
    MSL_INLINE constexpr T abs(T x) { return x < T(0) ? static_cast<T>(U(0) - U(x)) : x; }         \
    MSL_INLINE constexpr U absdiff(T x, T y) {                                                     \
        return static_cast<U>(x < y ? U(y) - U(x) : U(x) - U(y));                                  \
    }                                                                                              \
    MSL_INLINE T rotate(T x, T n) {                                                                \
        U bits = static_cast<U>(x);                                                                \
        U left = static_cast<U>(static_cast<U>(n) & (W - 1));                                      \
        U right = static_cast<U>((W - left) & (W - 1));                                            \
        return static_cast<T>(static_cast<U>(bits << left) | static_cast<U>(bits >> right));       \
    }                                                                                              \
    MSL_INLINE T popcount(T x) { return static_cast<T>(__builtin_popcountg(static_cast<U>(x))); }  \
    MSL_INLINE T clz(T x) { return static_cast<T>(__builtin_clzg(static_cast<U>(x), W)); }         \
    MSL_INLINE T ctz(T x) { return static_cast<T>(__builtin_ctzg(static_cast<U>(x), W)); }
MSL_EACH_INTEGER_SCALAR(MSL_BODY)
#undef MSL_BODY

#define MSL_BODY(T, U, S, W)                                                                       \
    MSL_INLINE T min(T x, T y) { return __builtin_elementwise_min(x, y); }                         \
    MSL_INLINE T max(T x, T y) { return __builtin_elementwise_max(x, y); }                         \
    MSL_INLINE T clamp(T x, T least, T most) { return min(max(x, least), most); }                  \
    MSL_INLINE U absdiff(T x, T y) {                                                               \
        return __builtin_bit_cast(U, max(x, y)) - __builtin_bit_cast(U, min(x, y));                \
    }                                                                                              \
    MSL_INLINE T rotate(T x, T n) {                                                                \
        U bits = __builtin_bit_cast(U, x);                                                         \
        U left = __builtin_bit_cast(U, n) & U(W - 1);                                              \
        U right = (U(W) - left) & U(W - 1);                                                        \
        return __builtin_bit_cast(T, (bits << left) | (bits >> right));                            \
    }
MSL_EACH_INTEGER_VECTOR(MSL_BODY)
#undef MSL_BODY

// Clang's builtins take narrow scalars for int, so scalars go through a vector.
#define MSL_BODY(T, U, S, W)                                                                       \
    MSL_INLINE T addsat(T x, T y) { return __builtin_elementwise_add_sat(x, y); }                  \
    MSL_INLINE T subsat(T x, T y) { return __builtin_elementwise_sub_sat(x, y); }                  \
    MSL_INLINE T reverse_bits(T x) { return __builtin_elementwise_bitreverse(x); }
MSL_EACH_INTEGER_VECTOR(MSL_BODY)
#undef MSL_BODY
#define MSL_BODY(T)                                                                                \
    MSL_INLINE T addsat(T x, T y) { return addsat(T##2(x), T##2(y)).x; }                           \
    MSL_INLINE T subsat(T x, T y) { return subsat(T##2(x), T##2(y)).x; }                           \
    MSL_INLINE T reverse_bits(T x) { return reverse_bits(T##2(x)).x; }
MSL_BODY(char) MSL_BODY(uchar) MSL_BODY(short) MSL_BODY(ushort)
MSL_BODY(int) MSL_BODY(uint) MSL_BODY(long) MSL_BODY(ulong)
#undef MSL_BODY

#define MSL_BODY(T, U, S, W)                                                                       \
    /* The means without the sum: common bits and half of the others. */                           \
    MSL_INLINE constexpr T hadd(T x, T y) { return static_cast<T>((x & y) + ((x ^ y) >> 1)); }     \
    MSL_INLINE constexpr T rhadd(T x, T y) { return static_cast<T>((x | y) - ((x ^ y) >> 1)); }    \
    MSL_INLINE T min3(T x, T y, T z) { return min(x, min(y, z)); }                                 \
    MSL_INLINE T max3(T x, T y, T z) { return max(x, max(y, z)); }                                 \
    MSL_INLINE T median3(T x, T y, T z) { return max(min(x, y), min(max(x, y), z)); }
MSL_EACH_INTEGER(MSL_BODY)
#undef MSL_BODY

// Signed ones; an unsigned number is its own magnitude.
#define MSL_BODY(T)                                                                                \
    MSL_INLINE T##2 abs(T##2 x) { return __builtin_elementwise_abs(x); }                           \
    MSL_INLINE T##3 abs(T##3 x) { return __builtin_elementwise_abs(x); }                           \
    MSL_INLINE T##4 abs(T##4 x) { return __builtin_elementwise_abs(x); }
MSL_BODY(char) MSL_BODY(short) MSL_BODY(int) MSL_BODY(long)
#undef MSL_BODY
#define MSL_BODY(T)                                                                                \
    MSL_INLINE T##2 abs(T##2 x) { return x; }                                                      \
    MSL_INLINE T##3 abs(T##3 x) { return x; }                                                      \
    MSL_INLINE T##4 abs(T##4 x) { return x; }
MSL_BODY(uchar) MSL_BODY(ushort) MSL_BODY(uint) MSL_BODY(ulong)
#undef MSL_BODY

// Bits at `offset`, `count` of them; offset + count is at most the width.
#define MSL_BODY(T, U, S, W)                                                                       \
    MSL_INLINE T extract_bits(T x, uint offset, uint count) {                                      \
        uint up = (W - offset - count) & (W - 1), down = (W - count) & (W - 1);                    \
        T found = static_cast<T>(static_cast<T>(x << up) >> down);                                 \
        return count == 0u ? T(0) : found;                                                         \
    }                                                                                              \
    MSL_INLINE T insert_bits(T base, T insert, uint offset, uint count) {                          \
        U ones = static_cast<U>(static_cast<U>(~U(0)) >> ((W - count) & (W - 1)));                 \
        U mask = count == 0u ? U(0) : static_cast<U>(ones << (offset & (W - 1)));                  \
        U moved = static_cast<U>(static_cast<U>(insert) << (offset & (W - 1)));                    \
        return static_cast<T>((static_cast<U>(base) & ~mask) | (moved & mask));                    \
    }
MSL_EACH_INTEGER_SCALAR(MSL_BODY)
#undef MSL_BODY
#define MSL_BODY(T, U, S, W)                                                                       \
    MSL_INLINE T extract_bits(T x, uint offset, uint count) {                                      \
        decltype(x.x + 0) up = (W - offset - count) & (W - 1), down = (W - count) & (W - 1);       \
        T found = (x << T(up)) >> T(down);                                                         \
        return count == 0u ? T(0) : found;                                                         \
    }                                                                                              \
    MSL_INLINE T insert_bits(T base, T insert, uint offset, uint count) {                          \
        auto mask = insert_bits(decltype(+base.x + 0ul)(0), ~decltype(+base.x + 0ul)(0), offset,   \
                                count);                                                            \
        T ones = T(static_cast<decltype(base.x + 0)>(mask));                                       \
        return (base & ~ones) | ((insert << T(offset & (W - 1))) & ones);                          \
    }
MSL_EACH_INTEGER_VECTOR(MSL_BODY)
#undef MSL_BODY

// Products. The narrow types fit a wider one; 64 bits are multiplied in halves.
#define MSL_BODY(T, Wide, W, least, most)                                                          \
    MSL_INLINE T mulhi(T x, T y) { return static_cast<T>((Wide(x) * Wide(y)) >> W); }              \
    MSL_INLINE T madsat(T x, T y, T z) {                                                           \
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
MSL_INLINE ulong mulhi(ulong x, ulong y) {
    ulong x1 = x >> 32, x0 = x & UINT_MAX, y1 = y >> 32, y0 = y & UINT_MAX;
    ulong middle = x1 * y0 + ((x0 * y0) >> 32);
    return x1 * y1 + (middle >> 32) + ((x0 * y1 + (middle & UINT_MAX)) >> 32);
}
MSL_INLINE long mulhi(long x, long y) {
    ulong found = mulhi(static_cast<ulong>(x), static_cast<ulong>(y));
    return static_cast<long>(found - (x < 0 ? static_cast<ulong>(y) : 0ul) -
                             (y < 0 ? static_cast<ulong>(x) : 0ul));
}
MSL_INLINE ulong madsat(ulong x, ulong y, ulong z) {
    ulong low = x * y + z;
    bool carry = low < z;
    return mulhi(x, y) != 0ul || carry ? ULONG_MAX : low;
}
MSL_INLINE long madsat(long x, long y, long z) {
    ulong low = static_cast<ulong>(x) * static_cast<ulong>(y) + static_cast<ulong>(z);
    ulong carry = low < static_cast<ulong>(z) ? 1ul : 0ul;
    long high = static_cast<long>(static_cast<ulong>(mulhi(x, y)) +
                                  static_cast<ulong>(z < 0 ? -1l : 0l) + carry);
    long found = static_cast<long>(low);
    return high == (found >> 63) ? found : (high < 0 ? LONG_MIN : LONG_MAX);
}
#define MSL_BODY(T)                                                                                \
    MSL_INLINE T madhi(T x, T y, T z) { return static_cast<T>(mulhi(x, y) + z); }                  \
    MSL_LANES_1(T, popcount, T)                                                                    \
    MSL_LANES_1(T, clz, T)                                                                         \
    MSL_LANES_1(T, ctz, T)                                                                         \
    MSL_LANES_2(T, mulhi, T, T)                                                                    \
    MSL_LANES_3(T, madhi, T)                                                                       \
    MSL_LANES_3(T, madsat, T)
MSL_BODY(char) MSL_BODY(uchar) MSL_BODY(short) MSL_BODY(ushort)
MSL_BODY(int) MSL_BODY(uint) MSL_BODY(long) MSL_BODY(ulong)
#undef MSL_BODY

// Only the low 24 bits of x and y count.
#define MSL_BODY(T)                                                                                \
    MSL_INLINE T mul24(T x, T y) { return ((x << 8) >> 8) * ((y << 8) >> 8); }                     \
    MSL_INLINE T mad24(T x, T y, T z) { return mul24(x, y) + z; }
MSL_BODY(int) MSL_BODY(int2) MSL_BODY(int3) MSL_BODY(int4)
MSL_BODY(uint) MSL_BODY(uint2) MSL_BODY(uint3) MSL_BODY(uint4)
#undef MSL_BODY

} // namespace metal
