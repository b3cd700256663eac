// A spectrum over time, drawn with its axes.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick {

struct SpectrumOverTime {
    std::size_t bins = 0;            // at least 1, over the logarithm of the frequency
    std::vector<float> values{};     // in [0, 1]: moment after moment, each `bins` from the lowest
    double start = 0, duration = 1;  // seconds; the moments part the duration evenly
    double lowest = 1, highest = 10; // Hz, the outer edges of the bins; above 0
};

// In pixels.
struct SpectrumLayout {
    std::uint32_t width = 1280, height = 720; // at least the least, at most 32767

    static constexpr std::uint32_t left = 64, right = 24, top = 16, bottom = 40; // around the plot
    static constexpr std::uint32_t leastWidth = 240, leastHeight = 160;

    std::uint32_t plotWidth() const { return width - left - right; }
    std::uint32_t plotHeight() const { return height - top - bottom; }
};

// High frequencies up, time to the right; black, violet, orange, white as values grow. At least one
// moment.
Picture spectrumPicture(const SpectrumOverTime& spectrum, const SpectrumLayout& layout);

} // namespace tarnwick
