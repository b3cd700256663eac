// Exponentials, logarithms and powers of one float. The polynomials are minimax approximations with
// 24-bit coefficients; the comments give their relative errors.
#pragma once

#include "core_scaling.h"

#pragma float_control(precise, on, push)
#pragma clang fp contract(off)

namespace metal {
namespace _core {

// A value as mantissa * 2^exponent.
struct Scaled {
    float mantissa;
    int exponent;
};

// 2^x for x in [-0.5, 0.5]: 2^-28.
MSL_INLINE float exp2_near_zero(float x) {
    float p = 1.524128456e-4f;
    p = p * x + 1.339130220e-3f;
    p = p * x + 9.618833661e-3f;
    p = p * x + 5.550358817e-2f;
    p = p * x + 0.2402264476f;
    p = p * x + 0.6931471825f;
    return 1.0f + p * x;
}
// e^x for |x| <= 0.35: 2^-28.
MSL_INLINE float exp_near_zero(float x) {
    float p = 1.378747867e-3f;
    p = p * x + 8.369382471e-3f;
    p = p * x + 4.166892543e-2f;
    p = p * x + 0.1666651517f;
    p = p * x + 0.4999999106f;
    return 1.0f + (x + x * x * p);
}

MSL_INLINE float between(float x, float least, float most) {
    return x < least ? least : (x > most ? most : x); // keeps a NaN
}

MSL_INLINE float exp2(float x) {
    x = between(x, -160.0f, 160.0f);
    float n = nearest(x);
    return scaled(exp2_near_zero(x - n), whole(n));
}
MSL_INLINE Scaled exp_parts(float x) {
    float n = nearest(x * 1.44269504f);
    float r = (x - n * 0.693359375f) - n * -2.12194442e-4f;
    return {exp_near_zero(r), whole(n)};
}
MSL_INLINE float exp(float x) {
    Scaled parts = exp_parts(between(x, -110.0f, 110.0f));
    return scaled(parts.mantissa, parts.exponent);
}
MSL_INLINE float exp10(float x) {
    x = between(x, -50.0f, 50.0f);
    float n = nearest(x * 3.32192802f);
    float r = (x - n * 0.30078125f) - n * 2.48745666e-4f; // log10(2) in two parts
    return scaled(exp_near_zero(r * 2.30258512f), whole(n));
}

// x = mantissa * 2^exponent with the mantissa in [sqrt(1/2), sqrt(2)), for x > 0 and finite.
MSL_INLINE Scaled centred(float x) {
    bool small = x < 0x1p-126f;
    uint given = bits(small ? x * 0x1p24f : x) + (0x3f800000u - 0x3f3504f3u);
    float mantissa = from_bits((given & 0x007fffffu) + 0x3f3504f3u);
    return {mantissa, static_cast<int>(given >> 23) - (small ? 127 + 24 : 127)};
}
// ln(1 + x) - x for x in [sqrt(1/2) - 1, sqrt(2) - 1]: 2^-30.
MSL_INLINE float log_tail(float x) {
    float p = 6.731991470e-2f;
    p = p * x + -0.1166011468f;
    p = p * x + 0.1188632399f;
    p = p * x + -0.1240827814f;
    p = p * x + 0.1422023028f;
    p = p * x + -0.1666785181f;
    p = p * x + 0.2000207305f;
    p = p * x + -0.2500001192f;
    p = p * x + 0.3333331347f;
    return x * x * (p * x - 0.5f);
}
// The logarithm of zero, negative numbers, infinity and NaN; `found` for other x.
MSL_INLINE float log_or_special(float x, float found) {
    if (x == infinity)
        return x;
    return x > 0.0f ? found : (x == 0.0f ? -infinity : not_a_number);
}

MSL_INLINE float log(float x) {
    Scaled parts = centred(x);
    float n = static_cast<float>(parts.exponent), f = parts.mantissa - 1.0f;
    float found = n * 0.693359375f + (f + (log_tail(f) + n * -2.12194442e-4f));
    return log_or_special(x, found);
}
MSL_INLINE float log2(float x) {
    Scaled parts = centred(x);
    float f = parts.mantissa - 1.0f;
    float tail = log_tail(f);
    // log2(e) - 1 keeps the product and its rounding error small.
    float found = f + (tail + (f + tail) * 0.442695051f);
    return log_or_special(x, static_cast<float>(parts.exponent) + found);
}
MSL_INLINE float log10(float x) {
    Scaled parts = centred(x);
    float n = static_cast<float>(parts.exponent), f = parts.mantissa - 1.0f;
    float found = n * 0.30078125f + ((f + log_tail(f)) * 0.434294492f + n * 2.48745666e-4f);
    return log_or_special(x, found);
}
// ln(1 + x), corrected by the rounding error of 1 + x.
MSL_INLINE float log1p(float x) {
    Pair one = sum(1.0f, x);
    Scaled parts = centred(one.high);
    float n = static_cast<float>(parts.exponent), f = parts.mantissa - 1.0f;
    float lost = one.low / one.high;
    float found = n * 0.693359375f + (f + (log_tail(f) + (n * -2.12194442e-4f + lost)));
    return x == infinity ? x : found;
}

// log2(x) to about 2^-32 of its value, for x > 0 and finite: 2 log2(e) atanh(s), s = f / (2 + f), with
// the leading term in two floats.
MSL_INLINE Pair log2_pair(float x) {
    Scaled parts = centred(x);
    float f = parts.mantissa - 1.0f;
    Pair whole = ordered_sum(2.0f, f);
    float s = f / whole.high;
    Pair back = product(s, whole.high);
    float rest = (((f - back.high) - back.low) - s * whole.low) / whole.high;
    float square = s * s;
    // atanh(s) / s - 1 for s <= 0.1718: 2^-35.
    float p = 0.1201174781f;
    p = p * square + 0.1425520331f;
    p = p * square + 0.2000042349f;
    p = p * square + 0.3333333135f;
    float tail = rest + s * square * p;
    // 2 log2(e) in two parts.
    Pair lead = product(s, 2.88539004f);
    float low = lead.low + (s * 3.85192607e-8f + tail * 2.88539004f);
    Pair total = sum(static_cast<float>(parts.exponent), lead.high);
    return ordered_sum(total.high, total.low + low);
}
// x^y for x > 0 and finite, y finite.
MSL_INLINE float positive_pow(float x, float y) {
    Pair l = log2_pair(x);
    float limit = 0x1p60f; // beyond it the result is 0, 1 or infinite; keeps products from overflow
    float power = between(y, -limit, limit);
    Pair p = product(power, l.high);
    float low = p.low + power * l.low;
    float high = between(p.high, -300.0f, 300.0f);
    float n = nearest(high);
    low = high == p.high ? low : 0.0f;
    float r = exp2_near_zero((high - n) + low);
    int exponent = whole(n);
    exponent = exponent < -250 ? -250 : (exponent > 250 ? 250 : exponent);
    return scaled(r, exponent);
}

MSL_INLINE float powr(float x, float y) {
    if (is_nan(x) || is_nan(y) || x < 0.0f)
        return not_a_number;
    bool isEdge = x == 0.0f || x == infinity;
    bool isFar = absolute(y) == infinity;
    if (isEdge)
        return y == 0.0f ? not_a_number : ((x == 0.0f) == (y > 0.0f) ? 0.0f : infinity);
    if (isFar)
        return x == 1.0f ? not_a_number : ((x < 1.0f) == (y > 0.0f) ? 0.0f : infinity);
    return positive_pow(x, y);
}
MSL_INLINE float pow(float x, float y) {
    if (y == 0.0f || x == 1.0f)
        return 1.0f;
    if (is_nan(x) || is_nan(y))
        return not_a_number;
    float size = absolute(x), reach = absolute(y);
    bool isWhole = reach >= 0x1p24f || __builtin_elementwise_trunc(y) == y;
    bool isOdd = isWhole && reach < 0x1p24f && (static_cast<int>(y) & 1) != 0;
    float found;
    if (reach == infinity)
        found = size == 1.0f ? 1.0f : ((size < 1.0f) == (y > 0.0f) ? 0.0f : infinity);
    else if (size == 0.0f || size == infinity)
        found = (size == 0.0f) == (y > 0.0f) ? 0.0f : infinity;
    else
        found = x < 0.0f && !isWhole ? not_a_number : positive_pow(size, y);
    return with_sign(found, isOdd ? x : 1.0f);
}

// 1 / sqrt(x), rounded once: adds half of the quotient's residual, which is computed exactly.
MSL_INLINE float rsqrt(float x) {
    if (!(x > 0.0f) || x == infinity)
        return x == 0.0f ? with_sign(infinity, x) : (x == infinity ? 0.0f : not_a_number);
    bool small = x < 0x1p-60f, large = x > 0x1p60f;
    float a = small ? x * 0x1p64f : (large ? x * 0x1p-64f : x);
    float y = 1.0f / __builtin_elementwise_sqrt(a);
    Pair square = product(y, y);
    Pair one = product(a, square.high);
    float residual = ((1.0f - one.high) - one.low) - a * square.low;
    y = y + 0.5f * y * residual;
    return small ? y * 0x1p32f : (large ? y * 0x1p-32f : y);
}

} // namespace _core
} // namespace metal

#pragma float_control(pop)
