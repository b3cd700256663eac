// IEEE 754 binary16 to float and back, to the nearest, ties to even: by _Float16's own rules
// written out, since not every compiler of this project has the type.
#pragma once

#include <cmath>
#include <cstdint>

namespace tarnwick::trials {

inline float fromHalfBits(std::uint32_t bits) {
    const int exponent = static_cast<int>(bits >> 10 & 31);
    const auto mantissa = static_cast<float>(bits & 1023);
    float size =
        exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(mantissa + 1024, exponent - 25);
    if (exponent == 31)
        size = mantissa == 0 ? INFINITY : NAN;
    return (bits & 0x8000) != 0 ? -size : size;
}

inline std::uint32_t halfBits(float value) {
    const std::uint32_t sign = std::signbit(value) ? 0x8000 : 0;
    const float size = std::abs(value);
    if (std::isnan(value))
        return sign | 0x7e00;
    if (size >= 65520)
        return sign | 0x7c00;
    if (size < 0x1p-14f)
        return sign | static_cast<std::uint32_t>(std::nearbyint(std::ldexp(size, 24)));
    const int exponent = std::ilogb(size);
    const float mantissa = std::nearbyint(std::ldexp(size, 10 - exponent)); // [1024, 2048]
    return sign | (static_cast<std::uint32_t>(exponent + 14) * 1024 +
                   static_cast<std::uint32_t>(mantissa));
}

} // namespace tarnwick::trials
