#include "TarnwickRender/Targets/FrameClock.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

// Draws for `seconds` on a clock of the test's own, each frame beginning up to `lateness` after it
// is due and taking `work`; gives the count of frames.
int framesIn(double seconds, double framesPerSecond, double lateness, double work) {
    FrameClock clock(framesPerSecond);
    double now = 1000;
    int frames = 0;
    while (now < 1000 + seconds) {
        now += clock.secondsUntilDue(now) + (frames % 2 == 0 ? lateness : 0);
        clock.begin(now);
        now += work;
        ++frames;
    }
    return frames;
}

TEST(FrameClock, keepsItsRateThoughFramesBeginLate) {
    EXPECT_NEAR(framesIn(10, 30, 0, 0.001), 300, 2);
    EXPECT_NEAR(framesIn(10, 30, 0.015, 0.001), 300, 2);
    EXPECT_NEAR(framesIn(10, 15, 0.02, 0.03), 150, 2);
}

TEST(FrameClock, doesNotMakeUpForMissedFrames) {
    EXPECT_NEAR(framesIn(10, 30, 0, 0.1), 100, 2); // as fast as the work allows, no faster
    FrameClock clock(30);
    clock.begin(100);
    clock.begin(3700); // an hour later
    EXPECT_NEAR(clock.secondsUntilDue(3700), 1.0 / 30, 1e-9);
}

} // namespace
} // namespace tarnwick
