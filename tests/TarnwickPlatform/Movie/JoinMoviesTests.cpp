#include "TarnwickPlatform/Movie/Encoders/StretchEncoder.h"
#include "TarnwickPlatform/Movie/Files/MoviePart.h"
#include "TarnwickPlatform/Movie/JoinMovies.h"
#include "TarnwickPlatform/Movie/MovieError.h"
#include "tests/TarnwickPlatform/Movie/SmallMovie.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

namespace tarnwick {
namespace {

std::vector<float> tone(std::int64_t samples) {
    std::vector<float> values;
    for (std::int64_t i = 0; i < samples; ++i) {
        const auto value = static_cast<float>(0.5 * std::sin(0.05 * static_cast<double>(i)));
        values.insert(values.end(), {value, value});
    }
    return values;
}

class JoinedMovie : public testing::TestWithParam<VideoCodecRow> {};

INSTANTIATE_TEST_SUITE_P(All, JoinedMovie, testing::ValuesIn(videoCodecRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(JoinedMovie, isTheMovieWrittenInOneGo) {
    const TemporaryFolder folder;
    const VideoSettings video = smallVideo(GetParam().codec);
    const std::vector<float> sound = tone(25 * 4800);
    const std::vector<MovieChapter> chapters{{0, "First"}, {7.5, "Second"}};
    writeMovie(folder.path() / "whole",
               {.video = video, .frames = 250, .samples = sound, .chapters = chapters});
    writeMovie(folder.path() / "1",
               {.video = video, .frames = 100, .samples = sound, .chapters = chapters});
    writeMovie(folder.path() / "2", {.video = video, .firstFrame = 100, .frames = 100});
    writeMovie(folder.path() / "3", {.video = video, .firstFrame = 200, .frames = 50});
    const std::vector parts{folder.path() / "1", folder.path() / "2", folder.path() / "3"};
    joinMovies(parts, folder.path() / "joined", GetParam().fileType);

    EXPECT_EQ(MoviePart(folder.path() / "joined", MoviePart::Track::video).frameCount(), 250);
    EXPECT_TRUE(contents(folder.path() / "joined") == contents(folder.path() / "whole"));
}

std::vector<std::vector<std::byte>> encoded(const VideoSettings& video,
                                            std::chrono::duration<double> patience) {
    std::vector<std::vector<std::byte>> packets;
    const auto keep = [&](VideoPacket packet) { packets.push_back(std::move(packet.bytes)); };
    StretchEncoder encoder(video, patience);
    for (std::int64_t frame = 0; frame < 250; ++frame)
        encoder.encode(convertedPicture(video, frame), frame, keep);
    encoder.finish(keep);
    return packets;
}

TEST(StretchEncoder, givesTheSamePacketsWhileStretchesOverlap) {
    const VideoSettings video = smallVideo(VideoCodec::h264);
    const auto overlapping = encoded(video, std::chrono::seconds(-1));
    EXPECT_EQ(overlapping.size(), 250U);
    EXPECT_TRUE(overlapping == encoded(video, StretchEncoder::usualPatience));
}

// The sentence; in brackets where the parts are not to blame.
std::string whyJoiningFails(const std::vector<std::filesystem::path>& parts,
                            const std::filesystem::path& output) {
    try {
        joinMovies(parts, output, MovieFileType::mpeg4);
    } catch (const MovieError& error) {
        const std::string sentence = error.what();
        return error.kind == MovieError::Kind::parts ? sentence : "[" + sentence + "]";
    }
    return "";
}

TEST(JoinMovies, saysWhichPartDoesNotFit) {
    const TemporaryFolder folder;
    const VideoSettings video = smallVideo(VideoCodec::h264);
    VideoSettings wider = video;
    wider.width = 80;
    writeMovie(folder.path() / "1", {.video = video, .frames = 100});
    writeMovie(folder.path() / "2", {.video = video, .firstFrame = 100, .frames = 5});
    writeMovie(folder.path() / "3", {.video = video, .firstFrame = 200, .frames = 5});
    writeMovie(folder.path() / "wide", {.video = wider, .firstFrame = 100, .frames = 5});
    std::ofstream(folder.path() / "text") << "no movie";
    const auto one = (folder.path() / "1").string();
    const auto why = [&](const char* first, const char* second) {
        return whyJoiningFails({folder.path() / first, folder.path() / second},
                               folder.path() / "joined");
    };
    EXPECT_EQ(why("1", "3"),
              (folder.path() / "3").string() +
                  " begins at frame 200, not at frame 100, where the part before it ends.");
    EXPECT_EQ(why("2", "3"),
              (folder.path() / "2").string() + " begins at frame 100, not at frame 0.");
    EXPECT_EQ(why("1", "wide"),
              (folder.path() / "wide").string() + " differs from " + one + " in its size.");
    EXPECT_EQ(why("1", "text"),
              (folder.path() / "text").string() +
                  " cannot be read as a movie: Invalid data found when processing input.");
    EXPECT_EQ(why("1", "none"), (folder.path() / "none").string() +
                                    " cannot be read as a movie: No such file or directory.");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "joined"));
    EXPECT_EQ(whyJoiningFails({one}, one), one + " is one of the parts that are to be joined.");
    EXPECT_EQ(whyJoiningFails({one}, "/nonexistent/movie"),
              "[/nonexistent/movie cannot be written: No such file or directory.]");
    EXPECT_EQ(whyJoiningFails({one}, "/dev/full"),
              "[/dev/full cannot be written: No space left on device.]");
}

} // namespace
} // namespace tarnwick
