#include "player/Exports/Progress.h"

#include <gtest/gtest.h>

namespace tarnwick::player {
namespace {

TEST(Progress, readsTheLinesOfCommandsAndNothingElse) {
    EXPECT_EQ(Progress::read(R"({"unit":"Frame","done":120,"goal":300,"seconds":4.5})"),
              (Progress{.unit = "Frame", .done = 120, .goal = 300, .seconds = 4.5}));
    EXPECT_EQ(Progress::read(R"({"part":"Still 2 of 5","doing":"Drawing","seconds":0})"),
              (Progress{.part = "Still 2 of 5", .doing = "Drawing"}));
    for (const char* other :
         {"", "tarnwick: Failed.", "{", "{}", R"({"seconds":1})", R"({"doing":"A","seconds":-1})",
          R"({"unit":"Frame","done":-1,"goal":2,"seconds":1})", R"({"doing":"A","seconds":"1"})",
          R"({"unit":"Frame","done":1e300,"goal":2,"seconds":1})"})
        EXPECT_EQ(Progress::read(other), std::nullopt) << other;
}

TEST(Pace, givesSpeedAndRemainingTimeOfTheLastSeconds) {
    Pace pace;
    Progress now{.unit = "Frame", .goal = 600};
    pace.add(now);
    EXPECT_EQ(pace.rate(), std::nullopt);
    EXPECT_EQ(progressText(now, pace), "0%");
    for (int second = 1; second <= 20; ++second) { // 10 frames a second
        now.done += 10;
        now.seconds += 1;
        pace.add(now);
    }
    EXPECT_NEAR(pace.rate().value(), 10, 1e-9);
    EXPECT_NEAR(pace.remaining().value(), 40, 1e-9);
    EXPECT_EQ(progressText(now, pace), "33%, 10.0 frames/s, 0:40 left");
    for (int second = 1; second <= 30; ++second) { // then 1
        now.done += 1;
        now.seconds += 1;
        pace.add(now);
    }
    EXPECT_NEAR(pace.rate().value(), 1, 0.5);
    pace.add({.unit = "Kilobyte", .goal = 10, .seconds = 60});
    EXPECT_EQ(pace.rate(), std::nullopt) << "other work begins";
    now.done = now.goal;
    EXPECT_EQ(progressText(now, pace), "finishing");
}

} // namespace
} // namespace tarnwick::player
