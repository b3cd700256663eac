// Draws a spectrum over time with its axes.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick {

struct SpectrumOverTime {
    std::size_t bins = 0;            // at least 1, over the logarithm of the frequency
    std::vector<float> values{};     // in [0, 1]: `bins` of each moment, the lowest first
    double start = 0, duration = 1;  // seconds; the moments divide the duration evenly
    double lowest = 1, highest = 10; // Hz, the outer edges of the bins; above 0
};

// In pixels.
struct SpectrumLayout {
    std::uint32_t width = 1280, height = 720; // from leastWidth and leastHeight to 32767

    static constexpr std::uint32_t left = 64, right = 24, top = 16, bottom = 40; // around the plot
    static constexpr std::uint32_t leastWidth = 240, leastHeight = 160;

    std::uint32_t plotWidth() const { return width - left - right; }
    std::uint32_t plotHeight() const { return height - top - bottom; }
};

// High frequencies at the top, time to the right. Values from 0 to 1 are black, violet, orange,
// white. Requires at least one moment.
Picture spectrumPicture(const SpectrumOverTime& spectrum, const SpectrumLayout& layout);

} // namespace tarnwick
