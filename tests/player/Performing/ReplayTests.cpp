// A performance is shown again as it was shown, and as it is exported.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickRender/Performing/TimelineStill.h"
#include "TarnwickRender/SoundFileTap.h"
#include "player/Drawing/LivePicture.h"
#include "player/Drawing/SourceChannel.h"
#include "player/Performing/Recorder.h"
#include "tests/player/DeviceTest.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr PixelSize size{64, 36};

constexpr const char* particles = R"(// @particles 200
// @param speed 0.5 0 1
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) {
    Particle q; q.at = fract(float2(id * 0.37, id * 0.71)); return q;
}
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    q.at = mix(q.at, u.mouse / u.resolution, 0.05 * p.speed);
}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.05); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return float4(1.0); }
float4 fade(float2 uv, Trails t, constant Uniforms& u, constant Params& p) { return t.at(uv) * 0.9; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) {
    return t.at(uv) * p.speed; }
)";
constexpr const char* feedback = R"(// @param speed 0.5 0 1
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    return mix(in.previous(uv), float4(p.speed, fract(u.time), u.mouse.x / u.resolution.x, 1.0), 0.2);
}
)";

class Replay : public DeviceTest, public testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        DeviceTest::SetUp();
        if (!device)
            return;
        played = program(GetParam());
    }

    LiveRecord record() const {
        return {.device = device,
                .program = played,
                .revision = 1,
                .transport = {},
                .settings = std::make_shared<const Settings>(),
                .size = size,
                .divisor = 1};
    }
    void show(const PerformedState& state) {
        LiveRecord shown = record();
        shown.transport = state.transport;
        shown.settings = std::make_shared<const Settings>(state.settings);
        shown.mouse = state.pointer;
        shown.restart = 1;
        live.show(std::make_shared<const LiveRecord>(shown));
    }
    void replay(const std::shared_ptr<const Performance>& performance, double seconds) {
        LiveRecord shown = record();
        shown.replay = performance;
        shown.replayedInputs = std::make_shared<const ReplayedInputs>();
        shown.transport = Transport{}.sought(seconds, 0);
        live.show(std::make_shared<const LiveRecord>(shown));
    }
    // Whether the picture becomes this one.
    bool becomes(const Picture& expected) {
        for (int tries = 0; tries < 200; ++tries) {
            const auto picture = live.snapshot().get();
            if (picture && picture->bytes == expected.bytes)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return false;
    }

    std::shared_ptr<const ShaderProgram> played;
    LivePicture live{[](const LiveNews&) {}};
};

// Seeks, steps, values and the mouse while the picture is paused: byte for byte.
TEST_P(Replay, showsThePicturesOfTheLivePerformance) {
    constexpr double host = 1000; // seconds, of the beginning
    PerformedState state{.settings = {.values = {{"speed", 0.3f}}},
                         .transport = Transport{}.sought(0.5, host)};
    Recorder recorder({}, state, host);
    std::vector<std::pair<double, PerformedState>> moments{{0.0, state}};
    const auto next = [&] {
        recorder.hear(state, host + static_cast<double>(moments.size()) / 7);
        moments.emplace_back(recorder.performance().length, state);
    };
    state.settings.values["speed"] = 0.9f;
    next();
    state.transport = state.transport.stepped(1, host);
    next();
    state.pointer = std::array{0.25f, 0.75f};
    next();
    state.transport = state.transport.stepped(1, host);
    next();
    state.transport = state.transport.sought(0.8, host);
    state.settings.values["speed"] = 0.2f;
    next();
    state.transport = state.transport.sought(0.1, host);
    next();
    recorder.end(host + 2);
    const auto performance =
        std::make_shared<const Performance>(Performance::decode(recorder.performance().encode()));
    EXPECT_EQ(*performance, recorder.performance());

    std::vector<Picture> stills;
    for (const auto& [time, shown] : moments) {
        const auto still =
            timelineStill(played, *device, size.width, size.height, performance, time);
        ASSERT_TRUE(still);
        stills.push_back(*still);
        show(shown);
        EXPECT_TRUE(becomes(*still)) << "live at " << time;
    }
    for (const std::size_t at : {6, 0, 3, 1, 5, 2, 4}) {
        replay(performance, moments[at].first);
        EXPECT_TRUE(becomes(stills[at])) << "replayed at " << moments[at].first;
    }
    EXPECT_NE(stills[0].bytes, stills[1].bytes);
    EXPECT_NE(stills[4].bytes, stills[5].bytes);
}

constexpr const char* inputsHead =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n    return ";

class ReplayedInputsTest : public DeviceTest {
  protected:
    std::shared_ptr<const ShaderProgram> colored(const std::string& color) {
        return program(inputsHead + ("float4(" + color + ", 1.0);\n}\n"));
    }
    // Channel 0 shows an episode of that colour.
    ChannelSources sourcesOf(const std::string& color) {
        ChannelSources made;
        made[0].episode =
            std::make_shared<const ChannelEpisode>(ChannelEpisode{.program = colored(color)});
        return made;
    }
    std::shared_ptr<const LiveChannels> channelsOf(const std::string& color) {
        auto made = std::make_shared<LiveChannels>();
        made->document = 1;
        made->channels[0].document = 2;
        made->episodes[2] = {colored(color), std::make_shared<const Settings>(), {}};
        return made;
    }
    void showRecord() { live.show(std::make_shared<const LiveRecord>(shown)); }
    void showAt(double seconds) {
        shown.transport = Transport{}.sought(seconds, 0);
        showRecord();
    }
    // Whether the first pixel becomes one like this, as 0xRRGGBB.
    bool becomes(const std::function<bool(int color)>& isWanted) {
        int color = -1;
        for (int tries = 0; tries < 300 && !isWanted(color); ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            if (const auto picture = live.snapshot().get())
                color = picture->bytes[2] << 16 | picture->bytes[1] << 8 | picture->bytes[0];
        }
        return isWanted(color);
    }
    void SetUp() override {
        DeviceTest::SetUp();
        shown = {.device = device,
                 .document = 1,
                 .revision = 1,
                 .settings = std::make_shared<const Settings>(),
                 .size = size,
                 .divisor = 1};
    }

    LiveRecord shown;
    LivePicture live{[](const LiveNews&) {}};
};

INSTANTIATE_TEST_SUITE_P(OfEachKind, Replay, testing::Values(particles, feedback));

// A replay shows the channels, the sound file and the levels of its times, not those of the record.
TEST_F(ReplayedInputsTest, areThoseOfTheReplaysTime) {
    auto made = std::make_shared<Performance>();
    made->start.transport = Transport{}.played(0);
    made->start.inputs["audio"] = {.file = "/song.wav"};
    made->changes = {
        {1, Performance::Input{"0", PerformedFile{.file = "/a.metal"}}},
        {1, Performance::Input{"audio"}},
        {2, HeardLevels{std::make_shared<const LevelCodes>(LevelCodes::of({0, 0, 0, 0.4f}, {}))}}};
    made->length = 3;
    int asked = 0; // on the drawing thread
    const FileOpeners open{.sound = [&](const std::filesystem::path&, gpu::Device& opened) {
        return SoundFileTap::make(
            [&](double, double, std::span<float> stereo) {
                std::ranges::fill(stereo, 0.5f);
                return ++asked % 3 == 0; // decoded a little later
            },
            opened);
    }};
    const PerformedInputs second{{"0", {.file = "/a.metal"}}};
    const auto inputs = std::make_shared<const ReplayedInputs>(
        ReplayedInputs{{made->start.inputs, {.soundFile = "/song.wav", .open = open}},
                       {second, {.channels = sourcesOf("0.0, 0.0, 1.0"), .open = open}}});
    shown.program = program(
        inputsHead + std::string("in.channel(0, uv) + float4(in.audio.w, 0.0, 0.0, 1.0);\n}\n"));
    shown.replay = made;
    shown.replayedInputs = inputs;
    shown.channels = channelsOf("0.0, 1.0, 0.0"); // of the document
    showAt(0.5);
    EXPECT_TRUE(becomes([](int color) { return color > 0x400000 && (color & 0xFFFF) == 0; }));
    showAt(1.5);
    EXPECT_TRUE(becomes([](int color) { return color == 0x0000FF; }));
    showAt(2.5);
    EXPECT_TRUE(becomes([](int color) { return color == 0x6600FF; }));
    shown.replay.reset();
    shown.transport = {};
    showRecord();
    EXPECT_TRUE(becomes([](int color) { return color == 0x00FF00; }));
}

// Frame n of the movie has the luma 16 + 2 n. The episode counts the frames, also those that only
// the next one reads, whose picture is not the one of their time.
TEST_F(ReplayedInputsTest, haveTheFrameOfAMovieAtEachTime) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "movie.mp4";
    const std::string command = "ffmpeg -v error -y -f lavfi -i "
                                "\"nullsrc=s=32x32:r=25:d=3.2,geq=lum='16+2*N':cb=128:cr=128\""
                                " -c:v mpeg4 -qscale:v 1 -g 80 -bf 2 " +
                                file.string();
    ASSERT_EQ(std::system(command.c_str()), 0) << "ffmpeg is missing";
    shown.program = program(R"(
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    const int shown = int(round(in.channel(0, uv).r * 219.0 / 2.0));
    const int wanted = int(u.time * 25.0 + 0.0025) % 80;
    const float wrong = shown == wanted ? 0.0 : 1.0 / 255.0;
    return float4(in.previous(uv).r + wrong, float(shown) / 255.0, 0.0, 1.0);
}
)");
    auto made = std::make_shared<Performance>();
    made->start.transport = Transport{}.played(0);
    made->start.inputs["0"] = {.file = file.string()};
    made->changes = {{0.5, Transport{}.sought(2.4, 0.5).played(0.5)},
                     {1.0, Transport{}.sought(0.2, 1.0).played(1.0)}};
    made->length = 3;
    ChannelSources channels;
    channels[0].file = file;
    const FileOpeners open{
        .channel = [](const std::filesystem::path& opened, gpu::Device& onDevice) {
            return std::make_unique<SourceChannel>(opened, FrameSource::Tell(), onDevice);
        }};
    shown.replay = made;
    shown.replayedInputs = std::make_shared<const ReplayedInputs>(
        ReplayedInputs{{made->start.inputs, {.channels = channels, .open = open}}});
    shown.transport = Transport{}.played(currentMediaTime());
    showRecord();
    const auto isNumber = [](int first, int last) {
        return [=](int color) {
            return color >> 8 >= first && color >> 8 <= last; // no red: no wrong frame
        };
    };
    EXPECT_TRUE(becomes(isNumber(60, 72))) << "after the first seek";
    EXPECT_TRUE(becomes(isNumber(10, 30))) << "after the second seek";
    showAt(0.9);
    EXPECT_TRUE(becomes(isNumber(70, 70)));
    showAt(0.4);
    EXPECT_TRUE(becomes(isNumber(10, 10)));
}

// The recorder keeps what differs, with the clock of the performance.
TEST(Recorder, keepsWhatMovesAndNothingElse) {
    PerformedState state{.settings = {.values = {{"speed", 0.3f}}},
                         .transport = Transport{.time = 2}.played(90)};
    Recorder recorder(Performance::markOf("mine", "text"), state, 100);
    recorder.hear(state, 100.5);
    EXPECT_TRUE(recorder.performance().changes.empty());
    EXPECT_EQ(recorder.performance().start.transport.timeAt(0), 12);
    state.settings.values["speed"] = 0.4f;
    state.settings.name = "Another"; // not drawn
    state.transport = state.transport.sought(1, 101);
    recorder.hear(state, 101);
    recorder.hear(state, 90); // a clock that goes back
    recorder.end(103);
    const Performance& made = recorder.performance();
    ASSERT_EQ(made.changes.size(), 2u);
    EXPECT_EQ(made.changes[0].time, 1);
    EXPECT_EQ(std::get<Transport>(made.changes[1].what).timeAt(1.5), 1.5);
    EXPECT_EQ(made.length, 3);
    recorder.hear(state, 1e9);
    EXPECT_EQ(made.length, 3);
}

// Levels move a picture that plays, and a paused one only with another change.
TEST(Recorder, keepsLevelsWhileTheClockPlays) {
    const auto heard = [](float level) {
        return HeardLevels{
            std::make_shared<const LevelCodes>(LevelCodes::of({0, 0, 0, level}, {}))};
    };
    PerformedState state{.transport = Transport{}.played(10), .heard = heard(0.1f)};
    Recorder recorder({}, state, 10);
    recorder.hearLevels(heard(0.1f), 10.5); // the same
    recorder.hearLevels(heard(0.2f), 11);
    state.heard = heard(0.3f);
    state.transport = state.transport.paused(12);
    recorder.hear(state, 12);
    recorder.hearLevels(heard(0.4f), 13);
    state.heard = heard(0.5f);
    state.pointer = std::array{0.5f, 0.5f};
    recorder.hear(state, 14);
    const auto& changes = recorder.performance().changes;
    ASSERT_EQ(changes.size(), 5u);
    EXPECT_EQ(changes[0], (Performance::Change{1, heard(0.2f)}));
    EXPECT_EQ(changes[1], (Performance::Change{2, heard(0.3f)}));
    EXPECT_EQ(changes[4], (Performance::Change{4, heard(0.5f)}));
}

} // namespace
} // namespace tarnwick::player
