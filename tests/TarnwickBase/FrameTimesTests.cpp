#include "TarnwickBase/FrameTimes.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(FrameTimes, areTooLongWithOneVeryLongFrameOrLoopsThatNeverEnd) {
    FrameTimes slow;
    for (int frame = 0; frame < 100; ++frame)
        slow.add(10, false); // a heavy episode on a small machine is shown
    EXPECT_FALSE(slow.areTooLong(19));
    EXPECT_TRUE(slow.areTooLong(20));

    slow.setLongestFrame(3);
    EXPECT_FALSE(slow.areTooLong(2.9));
    EXPECT_TRUE(slow.areTooLong(3));

    FrameTimes quick;
    for (int frame = 0; frame < 1000; ++frame)
        quick.add(0.1, true); // ended loops that take no time
    EXPECT_FALSE(quick.areTooLong(4.9, true));
    EXPECT_TRUE(quick.areTooLong(5, true));

    FrameTimes endless;
    endless.add(2, true);
    endless.add(2, false); // one frame that ends puts it down to chance
    endless.add(2, true);
    endless.add(2, true);
    EXPECT_FALSE(endless.areTooLong());
    EXPECT_FALSE(endless.areTooLong(1));
    EXPECT_TRUE(endless.areTooLong(1, true));
    endless.add(1, true);
    EXPECT_TRUE(endless.areTooLong());
    endless.restart();
    endless.setLongestFrame(2); // less than what endless loops may take
    EXPECT_FALSE(endless.areTooLong(1.9, true));
    EXPECT_TRUE(endless.areTooLong(2, true));
}

} // namespace
} // namespace tarnwick
