// The difference of two pictures.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace tarnwick::bench {

// Pictures agree if at most this share of their pixels differs by more than the tolerance. A
// difference in the last bit may move an edge by a pixel; no other difference is expected.
inline constexpr std::uint32_t tolerance = 2; // of 255, in any channel
inline constexpr double agreeing = 0.002;

struct PictureDifference {
    double differing = 0;        // share of pixels that differ by more than `tolerance`
    std::uint32_t strongest = 0; // largest difference of any channel, of 255

    bool agrees() const { return differing <= agreeing; }
};

// The difference of two pictures of one size, four bytes per pixel.
inline PictureDifference difference(const std::vector<std::uint8_t>& a,
                                    const std::vector<std::uint8_t>& b) {
    std::size_t differing = 0;
    std::uint32_t strongest = 0;
    for (std::size_t pixel = 0; pixel < a.size(); pixel += 4) {
        std::uint32_t here = 0;
        for (std::size_t channel = 0; channel < 4; channel++)
            here = std::max(here, static_cast<std::uint32_t>(
                                      std::abs(a[pixel + channel] - b[pixel + channel])));
        differing += here > tolerance ? 1 : 0;
        strongest = std::max(strongest, here);
    }
    return {static_cast<double>(differing) * 4 / static_cast<double>(a.size()), strongest};
}

} // namespace tarnwick::bench
