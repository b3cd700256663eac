#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Cameras/Cameras.h"
#include "TarnwickPlatform/Media/LoopedMedia.h"
#include "player/Channels/ChannelChoice.h"
#include "player/Channels/ChannelMemory.h"
#include "player/Channels/FrameSource.h"
#include "tests/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <future>

namespace tarnwick::player {
namespace {

constexpr int rate = 25, count = 80; // frames of the movie
constexpr double length = double{count} / rate;

// Frame n has the luma 16 + 2 n.
std::filesystem::path movie(const TemporaryFolder& folder, const std::string& name) {
    const auto file = folder.path() / name;
    const std::string command = "ffmpeg -v error -y -f lavfi -i "
                                "\"nullsrc=s=32x32:r=25:d=3.2,geq=lum='16+2*N':cb=128:cr=128\""
                                " -c:v mpeg4 -qscale:v 1 -g 30 -bf 2 " +
                                file.string();
    return std::system(command.c_str()) == 0 ? file : std::filesystem::path();
}

int numberOf(const Picture& picture) {
    return static_cast<int>(std::lround(picture.bytes.at(0) * 219.0 / 255 / 2));
}

// With an index of frames and without.
TEST(Channels, showTheFrameOfEachTimeOfAMovieThatLoops) {
    const TemporaryFolder folder;
    for (const char* name : {"movie.mp4", "movie.m4v"}) {
        const auto file = movie(folder, name);
        ASSERT_FALSE(file.empty()) << "ffmpeg is missing";
        const auto frames = LoopedMedia::open(file);
        Picture picture;
        for (const double time : {0.0, 0.04, 0.9, 3.1, 3.19, 3.3, 1.21, 1.0, 0.0, 2.5, 9.7, 2.41}) {
            if (frames->goTo(time))
                frames->readPicture(picture);
            const int expected = static_cast<int>(std::fmod(time, length) * rate + 1e-3) % count;
            EXPECT_NEAR(numberOf(picture), expected, 0) << name << " at " << time;
        }
    }
}

TEST(Channels, followTheTimeOnAThreadOfTheirOwnAndSeeANewFile) {
    const TemporaryFolder folder;
    const auto file = movie(folder, "movie.mp4");
    FrameSource source(SourceKind::file, file, {});
    source.follow(2.0);
    EXPECT_TRUE(eventually([&] {
        const auto frame = source.newest();
        return frame.picture && numberOf(*frame.picture) == 50;
    }));
    source.follow(0.4);
    EXPECT_TRUE(eventually([&] { return numberOf(*source.newest().picture) == 10; }));
}

// Also of a time that was left on the way to it.
TEST(Channels, reachExactlyTheFrameOfATimeOrHaveNone) {
    using namespace std::chrono_literals;
    const TemporaryFolder folder;
    FrameSource source(SourceKind::file, movie(folder, "movie.mp4"), {});
    for (const double time : {0.0, 3.1, 0.04, 3.1, 1.0}) {
        ASSERT_TRUE(source.reach(time, 10s));
        EXPECT_EQ(numberOf(*source.newest().picture), std::lround(time * rate - 0.49)) << time;
        for (const double other : {3.1, 0.0, time})
            source.follow(other);
    }
    FrameSource missing(SourceKind::file, folder.path() / "missing.mp4", {});
    EXPECT_TRUE(missing.reach(0, 10s));
    EXPECT_EQ(missing.newest().picture, nullptr);
}

TEST(Channels, sayOnceWhyAFileCannotBeReadAndReadItLater) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "later.mp4";
    std::atomic<int> sentences = 0;
    std::promise<std::string> first;
    FrameSource source(SourceKind::file, file, [&](const std::string& sentence) {
        if (sentences++ == 0)
            first.set_value(sentence);
    });
    EXPECT_EQ(first.get_future().get(),
              file.string() + " cannot be read: No such file or directory.");
    EXPECT_EQ(source.newest().picture, nullptr);
    ASSERT_FALSE(movie(folder, "later.mp4").empty());
    EXPECT_TRUE(eventually([&] { return source.number() > 0; }));
    EXPECT_EQ(sentences, 1);
}

TEST(Channels, areNeitherFoldersNorTextNorAddresses) {
    const TemporaryFolder folder;
    const auto text = folder.path() / "text.mp4";
    std::ofstream(text) << "This is no movie.";
    const auto list = folder.path() / "list.m3u8";
    std::ofstream(list) << "#EXTM3U\n#EXTINF:1,\nhttp://127.0.0.1:9/a.ts\n#EXT-X-ENDLIST\n";
    for (const auto& file :
         {folder.path(), text, list, std::filesystem::path("http://127.0.0.1:9/a")})
        EXPECT_THROW(MediaReader::openFile(file, {}), MediaError) << file;
    EXPECT_THROW(openCamera("/dev/video-none", {}), MediaError);
}

TEST(Channels, areChosenByNumberAndRemembered) {
    EXPECT_EQ(numberedChoice("3=/a/b.png")->choice.kind, ChannelChoice::Kind::file);
    EXPECT_EQ(numberedChoice("0=/dev/video1")->choice.kind, ChannelChoice::Kind::camera);
    EXPECT_EQ(numberedChoice("1=/a/b.metal")->choice.kind, ChannelChoice::Kind::episode);
    for (const char* wrong : {"", "0=", "4=a", "a", "0:a", "00=a"})
        EXPECT_FALSE(numberedChoice(wrong)) << wrong;

    const TemporaryFolder folder;
    const auto file = folder.path() / "state" / "channels.json";
    ChannelChoices choices;
    choices[1] = choiceOf("/a/b.mp4");
    choices[3] = choiceOf("/a/c.metal");
    rememberChannels(file, "/e.metal", choices);
    rememberChannels(file, "/f.metal", {choiceOf("/x.png")});
    EXPECT_EQ(rememberedChannels(file, "/e.metal"), choices);
    rememberChannels(file, "/e.metal", {});
    EXPECT_EQ(rememberedChannels(file, "/e.metal"), ChannelChoices{});
    EXPECT_EQ(rememberedChannels(file, "/f.metal")[0], choiceOf("/x.png"));
    std::ofstream(file) << "{\"episodes\": [3, {\"episode\": \"/f.metal\", \"channels\": 7}]}";
    EXPECT_EQ(rememberedChannels(file, "/f.metal"), ChannelChoices{});
}

} // namespace
} // namespace tarnwick::player
