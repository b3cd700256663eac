#include "TarnwickPlatform/Text/SpectrumPicture.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

// The sum of the three colours.
int brightness(const Picture& picture, std::size_t x, std::size_t y) {
    const std::uint8_t* pixel = &picture.bytes.at(y * picture.bytesPerRow + x * 4);
    return pixel[0] + pixel[1] + pixel[2];
}

int brightest(const Picture& picture, std::size_t x, std::size_t y, std::size_t width,
              std::size_t height) {
    int most = 0;
    for (std::size_t row = y; row < y + height; ++row)
        for (std::size_t column = x; column < x + width; ++column)
            most = std::max(most, brightness(picture, column, row));
    return most;
}

} // namespace

TEST(SpectrumPicture, hasHighFrequenciesUpAndTimeToTheRight) {
    // Low first, then the highest.
    const SpectrumOverTime spectrum{
        .bins = 3, .values = {1, 0, 0, 0, 0, 0.5f}, .lowest = 10, .highest = 10000};
    const SpectrumLayout layout{.width = 400, .height = 300};
    const Picture picture = spectrumPicture(spectrum, layout);
    const std::size_t left = SpectrumLayout::left, right = 400 - SpectrumLayout::right - 1,
                      top = SpectrumLayout::top, bottom = 300 - SpectrumLayout::bottom - 1;
    EXPECT_GT(brightness(picture, left, bottom), 600);
    const int half = brightness(picture, right, top);
    EXPECT_GT(half, 200);
    EXPECT_LT(half, 600);
    for (const auto& [x, y] : {std::pair{left, top}, {right, bottom}, {left, (top + bottom) / 2}})
        EXPECT_LT(brightness(picture, x, y), 30) << x << ", " << y;
    // The axes stop at the plot, and their labels stand beside it: 100 Hz is a third of the way up.
    EXPECT_GT(brightness(picture, left - 1, bottom), 300);
    EXPECT_GT(brightness(picture, left - 3, top + (bottom - top) * 2 / 3), 300);
    EXPECT_GT(brightest(picture, 0, top + (bottom - top) * 2 / 3 - 8, left - 5, 16), 400);
    EXPECT_GT(brightest(picture, left, bottom + 7, 40, 20), 400);
}

TEST(SpectrumPicture, isDrawnInAnySizeAndAtAnyTime) {
    for (const auto& [start, duration] :
         {std::pair{0.0, 1e-5}, {1e30, 1e-5}, {22369.0, 22369.0}, {0.1, 0.3}})
        for (const std::uint32_t width : {SpectrumLayout::leastWidth, 2000u}) {
            const SpectrumLayout layout{.width = width, .height = SpectrumLayout::leastHeight};
            const Picture picture = spectrumPicture({.bins = 256,
                                                     .values = std::vector<float>(256, 0.25f),
                                                     .start = start,
                                                     .duration = duration,
                                                     .lowest = 30,
                                                     .highest = 16000},
                                                    layout);
            const int middle = brightness(picture, 100, 50);
            EXPECT_GT(middle, 100);
            EXPECT_EQ(brightness(picture, width - SpectrumLayout::right - 1, 50), middle);
        }
}
