#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "tests/TarnwickPlatform/SmallMovie.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(MovieWriter, saysWhyATrackCannotBeAdded) {
    auto writer = MovieWriter::make("/nonexistent/movie.mp4", MovieFileType::mpeg4);
    VideoSettings odd = smallVideo(MovieCodec::h264);
    odd.width = 63;
    EXPECT_EQ(writer->add(odd), nullptr);
    EXPECT_EQ(writer->errorText(),
              "This codec takes pictures of an even width and height, not 63 x 48.");
    EXPECT_EQ(writer->add(smallVideo(MovieCodec::prores4444)), nullptr);
    EXPECT_EQ(writer->errorText(), "ProRes goes into QuickTime movies only.");
    EXPECT_EQ(writer->status(), MovieWriterStatus::unknown);
}

TEST(MovieWriter, failsWithTheSystemsWordsWhereTheFileCannotBeMade) {
    auto writer = MovieWriter::make("/nonexistent/movie.mp4", MovieFileType::mpeg4);
    ASSERT_NE(writer->add(smallVideo(MovieCodec::h264)), nullptr);
    EXPECT_FALSE(writer->startWriting());
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    EXPECT_EQ(writer->errorText(), "No such file or directory");
}

} // namespace
} // namespace tarnwick
