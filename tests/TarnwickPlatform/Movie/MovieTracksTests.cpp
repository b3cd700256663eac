// What is in the files that the writer makes, read back by libav.

#include "TarnwickPlatform/Movie/Files/MoviePart.h"
#include "tests/TarnwickPlatform/Movie/SmallMovie.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

struct CodecRow {
    VideoCodec codec;
    int bits;
    int moreBits; // that libavcodec decodes to
    double decibels;
};

class MovieTrack : public testing::TestWithParam<CodecRow> {};

INSTANTIATE_TEST_SUITE_P(All, MovieTrack,
                         testing::Values(CodecRow{VideoCodec::h264, 8, 0, 40},
                                         CodecRow{VideoCodec::hevc, 8, 0, 40},
                                         CodecRow{VideoCodec::prores422, 10, 0, 50},
                                         CodecRow{VideoCodec::prores4444, 10, 2, 50}));

TEST_P(MovieTrack, showsEachPictureAtItsTime) {
    const TemporaryFolder folder;
    const VideoSettings video = smallVideo(GetParam().codec);
    writeMovie(folder.path() / "movie", {.video = video, .frames = 45});
    const std::vector<DecodedPicture> decoded = decodedPictures(folder.path() / "movie");
    ASSERT_EQ(decoded.size(), 45U);
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        EXPECT_NEAR(decoded[i].seconds, static_cast<double>(i) / 10, 1e-9);
        EXPECT_TRUE(decoded[i].isBT709);
        const auto given = convertedPicture(video, static_cast<std::int64_t>(i));
        for (std::size_t plane = 0; plane < 3; ++plane)
            EXPECT_GE(likeness(samplesOf(*given, plane), decoded[i].planes[plane], GetParam().bits,
                               GetParam().moreBits),
                      GetParam().decibels)
                << i << " " << plane;
    }
}

TEST(MovieTracks, keepAlphaAsItWas) {
    const TemporaryFolder folder;
    const VideoSettings video = smallVideo(VideoCodec::prores4444);
    writeMovie(folder.path() / "movie", {.video = video, .frames = 2, .content = Content::noise});
    const std::vector<int> decoded = decodedPictures(folder.path() / "movie").at(1).planes.at(3);
    const auto drawn = drawnPicture(video, 1, Content::noise);
    for (std::int64_t y = 0; y < video.height; ++y)
        for (std::int64_t x = 0; x < video.width; ++x) {
            const int alpha = static_cast<int>(
                drawn->plane(0)[y * drawn->layout().planes[0].bytesPerRow + 4 * x + 3]);
            ASSERT_EQ(
                std::lround(decoded[static_cast<std::size_t>(y * video.width + x)] * 255.0 / 4095),
                alpha);
        }
}

class RatedTrack : public testing::TestWithParam<VideoCodec> {};

INSTANTIATE_TEST_SUITE_P(All, RatedTrack, testing::Values(VideoCodec::h264, VideoCodec::hevc));

TEST_P(RatedTrack, keepsToItsBitRateAndKeyFrames) {
    const TemporaryFolder folder;
    VideoSettings video = smallVideo(GetParam());
    video.framesPerSecond = 60; // the less often there are frames, the later the encoders react
    video.maxKeyFrameInterval = 120;
    video.averageBitRate = 300'000;
    constexpr std::int64_t frames = 600;
    writeMovie(folder.path() / "movie",
               {.video = video, .frames = frames, .content = Content::noise});
    MoviePart movie(folder.path() / "movie", MoviePart::Track::video);
    double bits = 0;
    std::int64_t sinceKeyFrame = video.maxKeyFrameInterval;
    while (const std::optional<VideoPacket> packet = movie.nextPicture()) {
        bits += 8 * static_cast<double>(packet->bytes.size());
        sinceKeyFrame = packet->isKeyFrame ? 1 : sinceKeyFrame + 1;
        EXPECT_LE(sinceKeyFrame, video.maxKeyFrameInterval);
    }
    constexpr double seconds = 10;
    EXPECT_NEAR(bits / seconds, 300'000, 30'000);
}

// The greatest sample and where it is.
std::pair<std::size_t, float> loudest(const std::vector<float>& samples) {
    const auto at = std::ranges::max_element(samples, {}, [](float s) { return std::abs(s); });
    return {static_cast<std::size_t>(at - samples.begin()), *at};
}

std::int64_t heardSamples(const std::filesystem::path& file) {
    MoviePart movie(file, MoviePart::Track::sound);
    std::int64_t end = 0;
    while (const std::optional<SoundPacket> packet = movie.nextSound())
        end = packet->sample + packet->duration;
    return end;
}

TEST(MovieTracks, soundBeginsAtItsFirstSample) {
    const TemporaryFolder folder;
    for (const std::size_t click : {0U, 20'011U}) {
        std::vector<float> samples(2 * 30'000);
        samples[2 * click] = samples[2 * click + 1] = 0.9F;
        for (const SoundOrder order : {SoundOrder::beforePictures, SoundOrder::afterPictures}) {
            writeMovie(folder.path() / "movie", {.video = smallVideo(VideoCodec::h264),
                                                 .frames = 6,
                                                 .samples = samples,
                                                 .order = order});
            const std::vector<float> decoded = decodedSound(folder.path() / "movie");
            EXPECT_GE(decoded.size(), 30'000U); // decoders give the last packet's filling, too
            EXPECT_EQ(heardSamples(folder.path() / "movie"), 30'000);
            EXPECT_EQ(loudest(decoded).first, click);
            EXPECT_GT(loudest(decoded).second, 0.3F);
        }
    }
}

} // namespace
} // namespace tarnwick
