#include "player/Exports/ChapterLines.h"

#include <gtest/gtest.h>

namespace tarnwick::player {
namespace {

TEST(ChapterLines, areTimesAndTitles) {
    const ChapterLines read =
        ChapterLines::read("1:05.5 Rings\n\n 0 Start of it \r\n1:00:00 End", 4000);
    ASSERT_EQ(read.chapters.size(), 3u) << read.error;
    EXPECT_EQ(read.chapters[0], (VideoChapters::Chapter{.at = 0, .title = "Start of it"}));
    EXPECT_EQ(read.chapters[1], (VideoChapters::Chapter{.at = 65.5, .title = "Rings"}));
    EXPECT_EQ(read.chapters[2].at, 3600);
    EXPECT_TRUE(ChapterLines::read("", 10).error.empty());
}

TEST(ChapterLines, nameTheLineThatIsNoChapter) {
    for (const char* line : {"Rings", "1:60 Rings", "-1 Rings", "1:2:3:4 Rings", "nan Rings", "5",
                             ":5 Rings", "1e99 Rings"})
        EXPECT_NE(ChapterLines::read(line, 1e6).error.find(line), std::string::npos) << line;
    EXPECT_EQ(ChapterLines::read("9 A\n10 B", 10).error,
              "The chapter \"B\" starts after the end of the movie.");
}

} // namespace
} // namespace tarnwick::player
