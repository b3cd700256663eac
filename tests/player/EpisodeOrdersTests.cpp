#include "player/Exports/EpisodeOrders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace tarnwick::player {
namespace {

// As text: "export <Mine.metal> ... -o >".
std::string lineOf(const Order& order) {
    std::string line;
    for (const OrderWord& word : order.words)
        line += word.kind == OrderWord::Kind::text     ? word.text + " "
                : word.kind == OrderWord::Kind::output ? "> "
                                                       : word.before + "<" + word.text + "> ";
    return line;
}

const EpisodeCopy episode{
    .title = "My/Rings", .text = "// text", .settings = {.values = {{"red", 0.5f}}}};

TEST(EpisodeOrders, exportAMovieOfTheCopy) {
    const Order order = movieOrder({.episode = episode,
                                    .format = {.preset = "hevcalpha",
                                               .size = PixelSize{640, 360},
                                               .framesPerSecond = 24,
                                               .hasSound = false,
                                               .hasWatermark = true},
                                    .start = 1.5,
                                    .duration = 0.1,
                                    .crossfade = 0.25,
                                    .chapters = {{.at = 0, .title = "One"}},
                                    .output = "/tmp/a.mov"});
    EXPECT_EQ(lineOf(order),
              "export <Rings.metal> --settings <settings.json> --preset hevcalpha --size 640x360 "
              "--fps 24 --no-sound --watermark --start 1.5 --duration 0.1 --loop 0.25 --chapters "
              "<chapters.json> -o > ");
    EXPECT_EQ(order.inputs.at(0), (OrderInput{"Rings.metal", "// text"}));
    EXPECT_EQ(Settings::decode(order.inputs.at(1).text), episode.settings);
    EXPECT_EQ(VideoChapters::decode(order.inputs.at(2).text).chapters.at(0).title, "One");
}

TEST(EpisodeOrders, leaveOutSettingsThatNoDocumentCanHold) {
    EpisodeCopy broken = episode;
    broken.settings.values["red"] = std::numeric_limits<float>::quiet_NaN();
    const Order order = stillOrder({.episode = broken});
    EXPECT_TRUE(Settings::decode(order.inputs.at(1).text).values.empty());
}

TEST(EpisodeOrders, giveTheChildTheChannelsAndCopiesOfOpenEpisodes) {
    EpisodeCopy reading = episode;
    reading.inputs.channels = {{.address = "0", .file = "/a b.mp4"},
                               {.address = "3", .text = "// other", .settings = {.name = "o"}},
                               {.address = "3.1", .file = "/c.png"}};
    const Order order = stillOrder({.episode = reading, .output = "/tmp/a.png"});
    EXPECT_EQ(lineOf(order),
              "still <Rings.metal> --settings <settings.json> --channel 0=/a b.mp4 --channel "
              "3=<channel 3.metal> --channel 3.1=/c.png --time 0 --frame 0 --size 1920x1080 -o > ");
    EXPECT_EQ(order.inputs.at(2), (OrderInput{"channel 3.metal", "// other"}));
    EXPECT_EQ(order.inputs.at(3).name, "channel 3.json");
}

// A performance has its own inputs.
TEST(EpisodeOrders, giveTheChildTheSoundFileThatIsHeard) {
    EpisodeCopy hearing = episode;
    hearing.inputs = {.channels = {{.address = "0", .file = "/c.png"}}, .sound = "/song.flac"};
    MovieRequest request{.episode = hearing};
    EXPECT_NE(lineOf(movieOrder(request)).find("--channel 0=/c.png --audio /song.flac --track own"),
              std::string::npos);
    request.episode.inputs.playsSound = true;
    EXPECT_NE(lineOf(movieOrder(request)).find("--track both"), std::string::npos);
    request.performance = "/a.performance";
    EXPECT_EQ(lineOf(movieOrder(request)).find("--channel"), std::string::npos);
    EXPECT_EQ(lineOf(movieOrder(request)).find("--audio"), std::string::npos);
    EXPECT_NE(lineOf(loopOrder({.episode = hearing})).find("--channel 0=/c.png"),
              std::string::npos);
    EXPECT_NE(lineOf(walkthroughOrder({.episode = hearing}))
                  .find("--channel 0=/c.png --audio /song.flac --track own"),
              std::string::npos);
    EXPECT_NE(lineOf(variationsOrder({.episode = hearing})).find("--audio /song.flac --track own"),
              std::string::npos);
    EXPECT_NE(lineOf(stillOrder({.episode = hearing})).find("--audio /song.flac"),
              std::string::npos);
}

// The commands that only draw refuse a sound for an episode that does not hear.
TEST(EpisodeOrders, giveADeafEpisodeOnlyAFileThatIsPlayed) {
    EpisodeCopy deaf = episode;
    deaf.inputs = {.sound = "/song.flac", .isHearing = false};
    const auto hasAudio = [](const Order& order) {
        return lineOf(order).find("--audio") != std::string::npos;
    };
    EXPECT_FALSE(hasAudio(stillOrder({.episode = deaf})));
    EXPECT_FALSE(hasAudio(movieOrder({.episode = deaf})));
    deaf.inputs.playsSound = true;
    EXPECT_FALSE(hasAudio(stillOrder({.episode = deaf})));
    EXPECT_FALSE(hasAudio(variationsOrder({.episode = deaf, .isMovie = false})));
    EXPECT_TRUE(hasAudio(movieOrder({.episode = deaf})));
}

TEST(EpisodeOrders, drawVariationsAsAMovieOrAsAPicture) {
    VariationsRequest request{.episode = episode, .seed = 7, .first = 3, .count = 1, .seconds = 2};
    EXPECT_EQ(lineOf(variationsOrder(request)),
              "variations <Rings.metal> --settings <settings.json> --seed 7 --from 3 --count 1 "
              "--spread 0.5 --preset web --duration 2 -o > ");
    request.isMovie = false;
    EXPECT_EQ(lineOf(variationsOrder(request)),
              "variations <Rings.metal> --settings <settings.json> --seed 7 --from 3 --count 1 "
              "--spread 0.5 --sheet > ");
}

TEST(EpisodeOrders, explainAnEpisodeAsPicturesOrAsAMovie) {
    WalkthroughRequest request{.episode = episode, .stages = {"/a.metal"}, .isMovie = false};
    EXPECT_EQ(lineOf(walkthroughOrder(request)),
              "walkthrough <Rings.metal> --settings <settings.json> --stages /a.metal --size "
              "1920x1080 --pages > ");
    request.isMovie = true;
    EXPECT_EQ(lineOf(walkthroughOrder(request)),
              "walkthrough <Rings.metal> --settings <settings.json> --stages /a.metal --preset web "
              "--page-seconds 6 --start 0 -o > ");
}

} // namespace
} // namespace tarnwick::player
