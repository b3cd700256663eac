#include "player/Drawing/PreviewScale.h"

#include <gtest/gtest.h>

namespace tarnwick::player {
namespace {

// Draws frames whose time is `full` seconds at full size and falls with the number of pixels.
void draw(PreviewScale& scale, double full, int frames) {
    for (int frame = 0; frame < frames; ++frame)
        scale.add(full / (scale.divisor() * scale.divisor()));
}

TEST(PreviewScale, isTheLargestSizeThatIsFastEnough) {
    for (const auto& [full, divisor] :
         {std::pair{0.01, 1}, {0.05, 2}, {0.2, 3}, {0.4, 4}, {30.0, 4}}) {
        PreviewScale scale;
        draw(scale, full, 400);
        EXPECT_EQ(scale.divisor(), divisor) << full;
    }
}

TEST(PreviewScale, growsAgainWhenFramesBecomeFast) {
    PreviewScale scale;
    draw(scale, 0.2, 100);
    draw(scale, 0.005, 2000);
    EXPECT_EQ(scale.divisor(), 1);
}

// At 0.038 s, 1 is too slow; at 2 a frame takes 0.0095 s, so that 1 seems worth another try.
TEST(PreviewScale, changesMoreAndMoreSeldomBetweenTwoSizes) {
    PreviewScale scale;
    int changes = 0, last = scale.divisor();
    for (int frame = 0; frame < 6000; ++frame) {
        const bool isSlow = frame % 2 == 0; // a time at the limit
        scale.add((isSlow ? 0.038 : 0.037) / (scale.divisor() == 1 ? 1 : 2));
        changes += scale.divisor() != last;
        last = scale.divisor();
    }
    EXPECT_LT(changes, 20);
}

TEST(PreviewScale, staysAtAFixedSize) {
    PreviewScale scale;
    scale.fix(2);
    draw(scale, 5, 100);
    EXPECT_EQ(scale.divisor(), 2);
    scale.fix(std::nullopt);
    EXPECT_EQ(scale.divisor(), 1);
}

} // namespace
} // namespace tarnwick::player
