#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "tests/TarnwickPlatform/Movie/SmallMovie.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(MovieWriter, saysWhyATrackCannotBeAdded) {
    auto writer = MovieWriter::make("/nonexistent/movie.mp4", MovieFileType::mpeg4);
    VideoSettings odd = smallVideo(VideoCodec::h264);
    odd.width = 63;
    EXPECT_EQ(writer->add(odd), nullptr);
    EXPECT_EQ(writer->errorText(), "A movie in H.264 has an even width and height, not 63 x 48.");
    for (const auto codec : {VideoCodec::hevc, VideoCodec::hevcAlpha}) {
        VideoSettings narrow = smallVideo(codec);
        narrow.width = 48;
        EXPECT_EQ(writer->add(narrow), nullptr);
        EXPECT_EQ(writer->errorText(), "A movie in HEVC has at least 50 x 32 pixels, not 48 x 48.");
    }
    EXPECT_EQ(writer->add(smallVideo(VideoCodec::prores4444)), nullptr);
    EXPECT_EQ(writer->errorText(), "ProRes goes into QuickTime movies only.");
    EXPECT_EQ(writer->status(), MovieWriterStatus::unknown);
}

TEST(MovieWriter, failsWithTheSystemsWordsWhereTheFileCannotBeMade) {
    auto writer = MovieWriter::make("/nonexistent/movie.mp4", MovieFileType::mpeg4);
    ASSERT_NE(writer->add(smallVideo(VideoCodec::h264)), nullptr);
    EXPECT_FALSE(writer->startWriting());
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    EXPECT_EQ(writer->errorText(), "No such file or directory");
}

// A device that is always full, written without its disk's own words being lost.
TEST(MovieWriter, saysThatTheDiskIsFull) {
    auto writer = MovieWriter::make("/dev/full", MovieFileType::quickTime);
    const VideoSettings settings = smallVideo(VideoCodec::prores4444);
    VideoInput* video = writer->add(settings);
    ASSERT_TRUE(writer->startWriting());
    writer->startSession({0, 10});
    for (std::int64_t i = 0; writer->status() == MovieWriterStatus::writing && i < 100; ++i) {
        waitFor(*writer, *video);
        video->append(drawnPicture(settings, i, Content::noise), {i, 10});
    }
    writer->finishWriting();
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    EXPECT_EQ(writer->errorText(), "No space left on device");
}

TEST(MovieWriter, isReadyWhileItsQueueHasRoomAndMoreMayCome) {
    const TemporaryFolder folder;
    auto writer = MovieWriter::make(folder.path() / "movie", MovieFileType::mpeg4);
    const VideoSettings settings = smallVideo(VideoCodec::h264);
    VideoInput* video = writer->add(settings);
    EXPECT_EQ(video->pixelBufferPool(), nullptr);
    ASSERT_TRUE(writer->startWriting());
    EXPECT_FALSE(video->isReadyForMoreMediaData());
    writer->startSession({0, 10});
    EXPECT_TRUE(video->isReadyForMoreMediaData());

    // Buffers that are kept are out until they are let go.
    std::vector<std::shared_ptr<PixelBuffer>> kept;
    while (auto buffer = video->pixelBufferPool()->take())
        kept.push_back(std::move(buffer));
    EXPECT_GE(kept.size(), static_cast<std::size_t>(settings.framesInHand));
    EXPECT_LE(kept.size(), 10U);
    kept.pop_back();
    EXPECT_NE(video->pixelBufferPool()->take(), nullptr);

    const auto picture = drawnPicture(settings, 0);
    EXPECT_FALSE(video->append(drawnPicture(smallVideo(VideoCodec::h264), 0), {0, 30}));
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    EXPECT_FALSE(video->isReadyForMoreMediaData());
    EXPECT_FALSE(video->append(picture, {0, 10}));
}

TEST(MovieWriter, takesPicturesThatWereConvertedElsewhere) {
    const TemporaryFolder folder;
    VideoSettings settings = smallVideo(VideoCodec::h264);
    writeMovie(folder.path() / "pixels", {.video = settings, .frames = 40});
    settings.source = VideoSettings::Source::converted;
    writeMovie(folder.path() / "converted", {.video = settings, .frames = 40});
    EXPECT_TRUE(contents(folder.path() / "pixels") == contents(folder.path() / "converted"));
}

TEST(MovieWriter, stopsWhenItIsCancelled) {
    const TemporaryFolder folder;
    for (const bool destroyed : {false, true}) {
        auto writer = MovieWriter::make(folder.path() / "movie", MovieFileType::mpeg4);
        const VideoSettings settings = smallVideo(VideoCodec::hevc);
        VideoInput* video = writer->add(settings);
        ASSERT_TRUE(writer->startWriting());
        writer->startSession({0, 10});
        for (std::int64_t i = 0; i < 30; ++i) {
            waitFor(*writer, *video);
            ASSERT_TRUE(video->append(drawnPicture(settings, i), {i, 10}));
        }
        if (destroyed)
            continue;
        writer->cancelWriting();
        EXPECT_EQ(writer->status(), MovieWriterStatus::cancelled);
        EXPECT_FALSE(video->isReadyForMoreMediaData());
        writer->finishWriting();
        EXPECT_EQ(writer->status(), MovieWriterStatus::cancelled);
        EXPECT_EQ(contents(folder.path() / "movie").find("moov"), std::string::npos);
    }
}

TEST(MovieWriter, failsWithoutPictures) {
    const TemporaryFolder folder;
    auto writer = MovieWriter::make(folder.path() / "movie", MovieFileType::mpeg4);
    ASSERT_NE(writer->add(smallVideo(VideoCodec::h264)), nullptr);
    EXPECT_EQ(writer->add(smallVideo(VideoCodec::h264)), nullptr);
    EXPECT_EQ(writer->errorText(), "The movie already has this track.");
    ASSERT_TRUE(writer->startWriting());
    writer->startSession({0, 10});
    writer->finishWriting();
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    EXPECT_EQ(writer->errorText(), "The movie has no pictures.");
}

TEST(MovieWriter, beginsPartsWhereStretchesDo) {
    const TemporaryFolder folder;
    auto writer = MovieWriter::make(folder.path() / "movie", MovieFileType::mpeg4);
    ASSERT_NE(writer->add(smallVideo(VideoCodec::h264)), nullptr);
    ASSERT_TRUE(writer->startWriting());
    writer->startSession({50, 10});
    EXPECT_EQ(writer->status(), MovieWriterStatus::failed);
    EXPECT_EQ(writer->errorText(),
              "A part of this movie begins at a multiple of 100 frames, not at 50.");
}

} // namespace
} // namespace tarnwick
