#include "TarnwickPlatform/Text/Canvas.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

// The bytes of the pixel at (x, y): blue, green, red, alpha.
std::array<int, 4> pixelAt(const Picture& picture, std::size_t x, std::size_t y) {
    const std::uint8_t* pixel = &picture.bytes[y * picture.bytesPerRow + x * 4];
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

} // namespace

TEST(Canvas, premultipliesWhatIsDrawn) {
    Canvas canvas(4, 2);
    canvas.fill({.x = 1, .y = 0, .width = 2, .height = 2}, {1, 0.5, 0, 0.5});
    const Picture picture = canvas.picture();
    EXPECT_EQ(pixelAt(picture, 0, 0), (std::array{0, 0, 0, 0}));
    const auto [blue, green, red, alpha] = pixelAt(picture, 1, 1);
    EXPECT_EQ(blue, 0);
    EXPECT_NEAR(green, 64, 1);
    EXPECT_NEAR(red, 128, 1);
    EXPECT_NEAR(alpha, 128, 1);
}

TEST(Canvas, wrapsTextAndCutsItAtItsLastLine) {
    TextBlock block{.text = "one two three four five", .points = 20, .width = 1000};
    const TextExtent whole = extentOf(block);
    EXPECT_EQ(whole.lines, 1);
    EXPECT_DOUBLE_EQ(whole.height, 28);
    block.width = whole.width / 2;
    block.lines = 5;
    const TextExtent wrapped = extentOf(block);
    EXPECT_GE(wrapped.lines, 2);
    EXPECT_LE(wrapped.lines, 3);
    EXPECT_LE(wrapped.width, block.width);
    block.lines = 1;
    EXPECT_EQ(extentOf(block).lines, 1);
    EXPECT_LE(extentOf(block).width, block.width);
    block.text = "";
    EXPECT_EQ(extentOf(block).lines, 1);
}

TEST(Canvas, givesEveryLetterOfCodeTheSameWidth) {
    TextBlock block{.typeface = TextBlock::Typeface::code, .points = 17, .width = 1e5};
    auto width = [&](const char* text) {
        block.text = text;
        return extentOf(block).width;
    };
    EXPECT_NEAR(width("iiiiiiiiii"), width("MMMMMMMMMM"), 0.1);
    EXPECT_NEAR(width("    "), 4 * width("x"), 0.1);
}

TEST(Canvas, drawsStretchesInTheirInkAndNothingOutsideOfTheBlock) {
    Canvas canvas(200, 60);
    const TextBlock block{.text = "\xff\xe2wwwwwwwwwwwwwwwwwwwwwwwwwwwwwww",
                          .typeface = TextBlock::Typeface::code,
                          .points = 20,
                          .ink = {1, 0, 0, 1},
                          .stretches = {{.start = 5, .length = 99, .ink = {0, 1, 0, 1}}},
                          .width = 100};
    canvas.draw(block, 50, 10);
    const Picture picture = canvas.picture();
    int red = 0, green = 0;
    for (std::size_t y = 0; y < 60; ++y)
        for (std::size_t x = 0; x < 200; ++x) {
            const auto pixel = pixelAt(picture, x, y);
            const bool isOutside = x < 50 || x >= 150 || y < 10 || y >= 38;
            EXPECT_TRUE(!isOutside || pixel[3] == 0) << x << ", " << y;
            red += pixel[2];
            green += pixel[1];
        }
    EXPECT_GT(red, 1000);
    EXPECT_GT(green, 1000);
}
