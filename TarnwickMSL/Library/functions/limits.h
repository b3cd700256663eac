// numeric_limits (<metal_limits>), with the members of C++17 (ISO/IEC 14882:2017, 21.3), for every
// type of numbers; for vectors the functions give vectors of equal lanes.
#pragma once

#include "constants.h"

#include "../types/bfloats.h"

namespace metal {

enum float_round_style {
    round_indeterminate = -1,
    round_toward_zero = 0,
    round_to_nearest = 1,
    round_toward_infinity = 2,
    round_toward_neg_infinity = 3
};
enum float_denorm_style { denorm_indeterminate = -1, denorm_absent = 0, denorm_present = 1 };

// The functions of T give V, which is T or a vector of it.
template <class T, class V> struct _limits {
    static constexpr bool is_specialized = false, is_signed = false, is_integer = false,
                          is_exact = false, is_iec559 = false, is_bounded = false,
                          is_modulo = false, has_infinity = false, has_quiet_NaN = false,
                          has_signaling_NaN = false, has_denorm_loss = false, traps = false,
                          tinyness_before = false;
    static constexpr int digits = 0, digits10 = 0, max_digits10 = 0, radix = 0, min_exponent = 0,
                         min_exponent10 = 0, max_exponent = 0, max_exponent10 = 0;
    static constexpr float_denorm_style has_denorm = denorm_absent;
    static constexpr float_round_style round_style = round_toward_zero;
    static constexpr V min() { return V(); }
    static constexpr V lowest() { return V(); }
    static constexpr V max() { return V(); }
    static constexpr V epsilon() { return V(); }
    static constexpr V round_error() { return V(); }
    static constexpr V infinity() { return V(); }
    static constexpr V quiet_NaN() { return V(); }
    static constexpr V signaling_NaN() { return V(); }
    static constexpr V denorm_min() { return V(); }
};

#define MSL_INTEGER_LIMITS(T, isSigned, bits, decimals, least, most)                               \
    template <class V> struct _limits<T, V> : _limits<void, V> {                                   \
        static constexpr bool is_specialized = true, is_signed = isSigned, is_integer = true,      \
                              is_exact = true, is_bounded = true, is_modulo = !isSigned && bits > 1;           \
        static constexpr int radix = 2, digits = bits, digits10 = decimals;                        \
        static constexpr V min() { return V(T(least)); }                                           \
        static constexpr V lowest() { return V(T(least)); }                                        \
        static constexpr V max() { return V(T(most)); }                                            \
    };
MSL_INTEGER_LIMITS(bool, false, 1, 0, false, true)
MSL_INTEGER_LIMITS(char, true, 7, 2, CHAR_MIN, CHAR_MAX)
MSL_INTEGER_LIMITS(int8_t, true, 7, 2, CHAR_MIN, CHAR_MAX)
MSL_INTEGER_LIMITS(uchar, false, 8, 2, 0, UCHAR_MAX)
MSL_INTEGER_LIMITS(short, true, 15, 4, SHRT_MIN, SHRT_MAX)
MSL_INTEGER_LIMITS(ushort, false, 16, 4, 0, USHRT_MAX)
MSL_INTEGER_LIMITS(int, true, 31, 9, INT_MIN, INT_MAX)
MSL_INTEGER_LIMITS(uint, false, 32, 9, 0, UINT_MAX)
MSL_INTEGER_LIMITS(long, true, 63, 18, LONG_MIN, LONG_MAX)
MSL_INTEGER_LIMITS(ulong, false, 64, 19, 0, ULONG_MAX)
#undef MSL_INTEGER_LIMITS

// `prefix` is the one of the type's constants: prefix_MAX and others. `tiny` is its least denormal.
#define MSL_FLOATING_LIMITS(T, prefix, decimals, tiny)                                             \
    template <class V> struct _limits<T, V> : _limits<void, V> {                                   \
        static constexpr bool is_specialized = true, is_signed = true, is_iec559 = true,           \
                              is_bounded = true, has_infinity = true, has_quiet_NaN = true,        \
                              has_signaling_NaN = true;                                            \
        static constexpr int radix = 2, digits = prefix##_MANT_DIG, digits10 = prefix##_DIG,       \
                             max_digits10 = decimals, min_exponent = prefix##_MIN_EXP,             \
                             min_exponent10 = prefix##_MIN_10_EXP,                                 \
                             max_exponent = prefix##_MAX_EXP,                                      \
                             max_exponent10 = prefix##_MAX_10_EXP;                                 \
        static constexpr float_denorm_style has_denorm = denorm_present;                           \
        static constexpr float_round_style round_style = round_to_nearest;                         \
        static constexpr V min() { return V(T(prefix##_MIN)); }                                    \
        static constexpr V lowest() { return V(T(-prefix##_MAX)); }                                \
        static constexpr V max() { return V(T(prefix##_MAX)); }                                    \
        static constexpr V epsilon() { return V(T(prefix##_EPSILON)); }                            \
        static constexpr V round_error() { return V(T(0.5f)); }                                    \
        static constexpr V infinity() { return V(T(INFINITY)); }                                   \
        static constexpr V quiet_NaN() { return V(T(NAN)); }                                       \
        static constexpr V signaling_NaN() { return V(T(NAN)); }                                   \
        static constexpr V denorm_min() { return V(T(tiny)); }                                     \
    };
MSL_FLOATING_LIMITS(float, FLT, 9, 0x1.0p-149f)
MSL_FLOATING_LIMITS(half, HALF, 5, 0x1.0p-24f)
MSL_FLOATING_LIMITS(bfloat, BFLT, 4, 0x1.0p-133f)
#undef MSL_FLOATING_LIMITS

template <class T> struct numeric_limits : _limits<element_of<T>, T> {};
template <class T> struct numeric_limits<const T> : numeric_limits<T> {};

} // namespace metal
