#include "TarnwickPlatform/Text/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace tarnwick {
namespace {

// The smallest rectangle that holds every pixel that is not black.
struct Ink {
    std::uint32_t left = 0, top = 0, right = 0, bottom = 0; // right and bottom are past the ink

    double centerX() const { return (left + right) / 2.0; }
    double centerY() const { return (top + bottom) / 2.0; }
    std::uint32_t height() const { return bottom - top; }
};

Ink inkOf(std::string_view text, double points, const TextBand& band) {
    constexpr std::uint32_t width = 400, height = 200;
    Picture picture{width, height, width * 4, std::vector<std::uint8_t>(width * height * 4)};
    drawCenteredText(picture, text, points, band);
    Ink ink{width, height, 0, 0};
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x)
            if (picture.bytes[(std::size_t{y} * width + x) * 4] > 64)
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                       std::max(ink.bottom, y + 1)};
    return ink;
}

constexpr TextBand middle{40, 60, 320, 80};

TEST(Text, standsInTheMiddleOfItsBand) {
    const Ink ink = inkOf("No Metal device.", 18, middle);
    EXPECT_NEAR(ink.centerX(), 200, 2);
    EXPECT_NEAR(ink.centerY(), 100, 4);
    EXPECT_GT(ink.height(), 11u); // an M of 18 pixels' font
    EXPECT_LT(ink.height(), 22u);
}

TEST(Text, growsWithItsPoints) {
    const Ink small = inkOf("Saver", 9, middle), large = inkOf("Saver", 18, middle);
    EXPECT_NEAR(2.0 * small.height(), large.height(), 3);
}

TEST(Text, staysInsideItsBand) {
    std::string much;
    for (int word = 0; word < 100'000; ++word)
        much += "word ";
    const Ink ink = inkOf(much, 18, middle);
    EXPECT_GE(ink.left, 40u);
    EXPECT_LE(ink.right, 360u);
    EXPECT_GE(ink.top, 60u);
    EXPECT_LE(ink.top, 70u);
    EXPECT_LE(ink.bottom, 140u);
}

TEST(Text, showsWhatItCanOfBadBytesAndOddBands) {
    EXPECT_GT(inkOf("a\xFFz", 18, middle).right, 0u);
    EXPECT_EQ(inkOf("text", 18, {40, 60, -10, 80}).right, 0u);
    EXPECT_GT(inkOf("text", 9, {40, -10, 320, 80}).right, 0u);
}

} // namespace
} // namespace tarnwick
