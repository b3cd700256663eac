// The weights of the conversion from pixels to Y'CbCr (ColorConversion.h has the formulae) as whole
// numbers, so that processors and GPUs give the same bytes.
#pragma once

#include <cstdint>

namespace tarnwick {

// (offset + blue * B + green * G + red * R) >> fractionBits is a code value, where B, G and R are
// sums of pixels' components. Rounds to the nearest. The sum is in [0, 2^31).
struct ColorWeights {
    static constexpr int fractionBits = 18;

    std::int32_t blue;
    std::int32_t green;
    std::int32_t red;
    std::int32_t offset; // including the half that rounds
};

namespace colorweights {

constexpr double lumaRed = 0.2126;
constexpr double lumaGreen = 0.7152;
constexpr double lumaBlue = 0.0722;

constexpr std::int32_t fixed(double value) {
    const double scaled = value * (1 << ColorWeights::fractionBits);
    return static_cast<std::int32_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
}

constexpr ColorWeights chroma(int bits, double blue, double red, double range, int samples) {
    const double scale = 224.0 * (1 << (bits - 8)) / 255.0 / range / samples;
    return {fixed(scale * (blue - lumaBlue)), fixed(scale * -lumaGreen),
            fixed(scale * (red - lumaRed)), fixed(128 * (1 << (bits - 8)) + 0.5)};
}

} // namespace colorweights

// For one pixel and code values of `bits` bits, 8 or 10.
constexpr ColorWeights lumaWeights(int bits) {
    using namespace colorweights;
    const double scale = 219.0 * (1 << (bits - 8)) / 255.0;
    return {fixed(scale * lumaBlue), fixed(scale * lumaGreen), fixed(scale * lumaRed),
            fixed(16 * (1 << (bits - 8)) + 0.5)};
}

// `samples` is the sum of the weights with which pixels are added up, in [1, 8].
constexpr ColorWeights blueDifference(int bits, int samples) {
    return colorweights::chroma(bits, 1, 0, 1.8556, samples);
}

constexpr ColorWeights redDifference(int bits, int samples) {
    return colorweights::chroma(bits, 0, 1, 1.5748, samples);
}

} // namespace tarnwick
