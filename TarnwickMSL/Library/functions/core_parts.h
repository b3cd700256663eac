// Parts of a float: exponent and mantissa, neighbours, remainders. All exact.
#pragma once

#include "core_scaling.h"

#pragma float_control(precise, on, push)
#pragma clang fp contract(off)

namespace metal {
namespace _core {

// The bits without the sign. A denormal is multiplied by 2^24 into the normal range.
struct Lifted {
    uint bits;
    int lift; // 24 or 0
};
MSL_INLINE Lifted lifted(float x) {
    uint given = bits(x) & 0x7fffffffu;
    bool denormal = given < 0x00800000u;
    // By integers, since a device may flush denormals: their value is the bits times 2^-149.
    uint made = bits(static_cast<float>(given)) - (given == 0u ? 0u : (149u - 24u) << 23);
    return {denormal ? made : given, denormal ? 24 : 0};
}

MSL_INLINE float frexp(float x, int& exponent) {
    Lifted l = lifted(x);
    bool plain = l.bits != 0u && l.bits < 0x7f800000u;
    exponent = plain ? static_cast<int>(l.bits >> 23) - 126 - l.lift : 0;
    float mantissa = from_bits((l.bits & 0x007fffffu) | 0x3f000000u);
    return plain ? with_sign(mantissa, x) : x;
}
MSL_INLINE int ilogb(float x) {
    Lifted l = lifted(x);
    if (l.bits == 0u || l.bits > 0x7f800000u)
        return FP_ILOGB0;
    return l.bits == 0x7f800000u ? INT_MAX : static_cast<int>(l.bits >> 23) - 127 - l.lift;
}
MSL_INLINE float ldexp(float x, int n) {
    n = n < -300 ? -300 : (n > 300 ? 300 : n);
    // Three factors. The largest reduction is in the middle, so that only one product rounds.
    int step = n < -126 ? -100 : (n > 127 ? 127 : n);
    int rest = n - step;
    int next = rest < -126 ? -100 : (rest > 127 ? 127 : rest);
    return x * power_of_two(step) * power_of_two(next) * power_of_two(rest - next);
}
MSL_INLINE float nextafter(float x, float y) {
    uint from = bits(x), to = bits(y);
    uint size = from & 0x7fffffffu;
    if (size > 0x7f800000u || (to & 0x7fffffffu) > 0x7f800000u)
        return not_a_number;
    if (from == to || (size | (to & 0x7fffffffu)) == 0u)
        return y;
    if (size == 0u)
        return from_bits((to & 0x80000000u) | 1u);
    // Away from zero if y has the sign of x and is larger.
    bool away = ((from ^ to) >> 31) == 0u && (to & 0x7fffffffu) > size;
    return from_bits(away ? from + 1u : from - 1u);
}
MSL_INLINE float modf(float x, float& whole) {
    whole = __builtin_elementwise_trunc(x);
    return with_sign(absolute(x) == infinity ? 0.0f : x - whole, x);
}
MSL_INLINE float fract(float x) {
    float found = x - __builtin_elementwise_floor(x);
    found = found >= 1.0f ? 0x1.fffffep-1f : found;
    return absolute(x) == infinity ? 0.0f : found;
}

// Remainder of magnitudes by long division, eight bits of the quotient at a time.
MSL_INLINE float fmod(float x, float y) {
    Lifted a = lifted(x), b = lifted(y);
    if (a.bits >= 0x7f800000u || b.bits > 0x7f800000u || b.bits == 0u)
        return not_a_number;
    if (b.bits == 0x7f800000u || a.bits == 0u)
        return x;
    int aExponent = static_cast<int>(a.bits >> 23) - a.lift;
    int bExponent = static_cast<int>(b.bits >> 23) - b.lift;
    if (aExponent < bExponent)
        return x;
    uint remainder = (a.bits & 0x007fffffu) | 0x00800000u;
    uint divisor = (b.bits & 0x007fffffu) | 0x00800000u;
    remainder %= divisor;
    int steps = aExponent - bExponent;
    for (int i = 0; i < 40; ++i) {
        if (steps <= 0)
            break;
        int now = steps < 8 ? steps : 8;
        remainder = (remainder << now) % divisor;
        steps -= now;
    }
    float found = ldexp(static_cast<float>(remainder), bExponent - 150);
    return with_sign(found, x);
}

} // namespace _core
} // namespace metal

#pragma float_control(pop)
