#include "TarnwickCore/Performance/Transport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tarnwick {
namespace {

TEST(Transport, movesWithTheHostClockOnlyWhilePlaying) {
    const Transport still;
    EXPECT_EQ(still.timeAt(1000), 0);
    const Transport playing = still.played(1000);
    EXPECT_DOUBLE_EQ(playing.timeAt(1002.5), 2.5);
    const Transport paused = playing.paused(1003);
    EXPECT_DOUBLE_EQ(paused.timeAt(2000), 3);
}

// No change of speed, loop or state moves the time at which it is made.
TEST(Transport, isContinuousAcrossChanges) {
    const Transport playing = Transport{}.played(10).withSpeed(2.5, 12);
    const double time = playing.timeAt(15);
    for (const Transport& changed :
         {playing.withSpeed(-3, 15), playing.paused(15), playing.played(15),
          playing.withLoop(LoopRange{1, 100}, 15), playing.withLoop({}, 15)})
        EXPECT_DOUBLE_EQ(changed.timeAt(15), time);
}

TEST(Transport, wrapsInALoopInBothDirections) {
    const Transport forwards = Transport{}.withLoop(LoopRange{2, 5}, 0).played(0);
    EXPECT_DOUBLE_EQ(forwards.timeAt(4.5), 4.5);
    EXPECT_DOUBLE_EQ(forwards.timeAt(5), 2);
    EXPECT_DOUBLE_EQ(forwards.timeAt(12), 3);
    const Transport backwards = forwards.sought(4, 0).withSpeed(-1, 0);
    EXPECT_DOUBLE_EQ(backwards.timeAt(3), 4);
    // A time after the range goes on without wrapping.
    EXPECT_DOUBLE_EQ(forwards.sought(8, 0).timeAt(3), 11);
}

TEST(Transport, neverLeavesTheTimesOfAnEpisode) {
    const Transport playing = Transport{}.played(0).withSpeed(-1, 0);
    EXPECT_EQ(playing.timeAt(5), 0);
    EXPECT_EQ(playing.sought(-3, 1).timeAt(1), 0);
    EXPECT_EQ(playing.sought(std::nan(""), 1).timeAt(1), 0);
    EXPECT_EQ(playing.withSpeed(std::numeric_limits<double>::infinity(), 1).speed, -1);
    EXPECT_EQ(playing.withLoop(LoopRange{3, 3}, 1), playing);
}

TEST(Transport, stepsByWholeFrames) {
    const Transport at = Transport{}.sought(1.004, 0);
    EXPECT_EQ(Transport::frameOf(at.timeAt(0)), 60);
    EXPECT_DOUBLE_EQ(at.stepped(1, 0).timeAt(9), 61.0 / 60);
    EXPECT_DOUBLE_EQ(at.stepped(-100, 0).timeAt(9), 0);
}

} // namespace
} // namespace tarnwick
