#include "TarnwickCore/Performance/PerformanceCursor.h"
#include "TarnwickRender/Performing/TimelineStill.h"
#include "TarnwickRender/VideoExporter.h"
#include "tests/TarnwickRender/RecordingWriter.h"
#include "tests/TarnwickRender/Rendering.h"

#include <cmath>
#include <random>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

constexpr std::int64_t width = 32, height = 18;

std::string shading(const std::string& color, const std::string& inputs = "") {
    return "// @param level 0.5 0 1\nfloat4 shade(float2 uv, " + std::string(arguments) + inputs +
           ") {\n    return " + color + ";\n}\n";
}

// Points that follow the pointer, by the level of each step.
std::string swarm(const std::string& color = "trails.at(uv)") {
    std::string text =
        ParticleEpisode{.count = 40,
                        .fields = "float2 at;",
                        .spawn = "q.at = fract(float2(id * 0.37, id * 0.71)) * p.level;",
                        .update = "q.at = mix(q.at, u.mouse / u.resolution, 0.1 * p.level);",
                        .fade = "return previous.at(uv) * 0.9;"}
            .text();
    text.resize(text.rfind("float4 shade"));
    return "// @param level 0.5 0 1\n" + text + "float4 shade(float2 uv, " +
           std::string(arguments) + ", Trails trails) { return " + color + "; }\n";
}
const std::string smear =
    shading("mix(in.previous(uv), float4(p.level, fract(u.time), u.mouse.x / u.resolution.x, 1.0), "
            "0.25) + float4(0.0, 0.0, in.audio.w * 0.1, 0.0)",
            ", Inputs in") +
    "float2 sound(float t, constant Params& p) { return sin(t * 2000.0) * p.level; }\n";

std::shared_ptr<const LevelCodes> levels(float level) {
    const std::vector<float> spectrum(LevelCodes::bins, level);
    return std::make_shared<const LevelCodes>(LevelCodes::of({0, 0, 0, level}, spectrum));
}

// Two seconds of dragging, seeking, pausing, other speeds and a loop, in both directions.
Performance wild(unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> share;
    Performance made;
    made.start.settings.keys.set("level", 0.2, 0.9f);
    made.start.transport = Transport{.time = share(random)}.played(0);
    PerformedState state = made.start;
    state.settings.keys.clear("level");
    for (int count = 0; made.length < 2.2; ++count) {
        made.length += share(random) / 8;
        if (count % 2 == 0)
            state.settings.values["level"] = share(random);
        if (count % 3 == 0)
            state.pointer = std::array{share(random), share(random)};
        if (count % 4 == 1)
            state.heard.codes = levels(share(random));
        if (count % 9 == 8)
            state.heard = {};
        if (count % 5 == 0)
            state.transport = state.transport.sought(share(random) * 2, made.length);
        if (count % 7 == 0)
            state.transport = state.transport.withSpeed(share(random) * 5 - 2, made.length)
                                  .withLoop(LoopRange{0.2, 0.3 + share(random)}, made.length);
        if (count % 8 == 3)
            state.transport = state.transport.paused(made.length);
        if (count % 8 == 5)
            state.transport = state.transport.played(made.length);
        const PerformedState before =
            PerformanceCursor(std::make_shared<Performance>(made)).at(made.length);
        for (Performance::What& what : changesBetween(before, state))
            made.changes.push_back({made.length, std::move(what)});
    }
    return made;
}

class PerformanceExport : public Rendering {
  protected:
    ExportSegment segmentOf(const std::string& episode, const Performance& performance) {
        return {.program = program(episode),
                .timeline = std::make_shared<const Performance>(performance),
                .duration = performance.length,
                .sound = true};
    }
    std::vector<Picture> pictures(const ExportSegment& segment, std::int64_t fps) {
        const ExportPreset preset{"small", "Small", width, height, fps, 100'000, VideoCodec::h264};
        recording = {};
        ExportDetails details;
        details.makeWriter = recordingWriters(recording);
        details.colorConversion = ColorConversionPlace::writer; // it keeps pixels
        VideoExporter::export_(
            {&segment, 1}, preset, *device, {}, [](std::int64_t, std::int64_t) { return true; },
            details);
        return recording.pictures;
    }

    Recording recording;
};

} // namespace

// A frame shows the settings, the clock and the pointer of its time.
TEST_F(PerformanceExport, showsTheStateOfEachFramesTime) {
    const ExportSegment segment = segmentOf(
        shading("float4(p.level, fract(u.time), u.mouse.x / u.resolution.x, 1.0)"), wild(1));
    const std::vector<Picture> found = pictures(segment, 30);
    PerformanceCursor cursor(segment.timeline.performance());
    ASSERT_GE(found.size(), 60u);
    for (std::size_t frame = 0; frame < found.size(); ++frame) {
        const double seconds = static_cast<double>(frame) / 30;
        const PerformedState& state = cursor.at(seconds);
        const double time = state.transport.timeAt(seconds);
        const ParamValues values = state.settings.valuesAt(time);
        const float level = values.contains("level") ? values.at("level") : 0.5f;
        const Color color = colorAt(found[frame], 3, 3);
        EXPECT_NEAR(color[0], 255 * level, 1) << frame;
        EXPECT_NEAR(color[1], 255 * (time - std::floor(time)), 1) << frame;
        EXPECT_NEAR(color[2], 255 * (state.pointer ? (*state.pointer)[0] : 0.5f), 1) << frame;
    }
}

// Levels of a device are those of the frame's time; without them it hears its own sound.
TEST_F(PerformanceExport, hearsTheLevelsOfEachFramesTime) {
    Performance made;
    made.start.transport = Transport{}.played(0);
    for (int change = 1; change < 20; ++change)
        made.changes.push_back(
            {change / 20.0, HeardLevels{levels(static_cast<float>(change) / 20)}});
    made.changes.push_back({1, HeardLevels{}});
    made.length = 1.5;
    const std::vector<Picture> found = pictures(
        segmentOf(shading("float4(in.audio.w, in.band(0.5), 0.0, 1.0)", ", Inputs in"), made), 60);
    ASSERT_EQ(found.size(), 90u);
    for (const std::size_t frame : {0, 1, 4, 29, 59, 60, 89}) {
        const int level = frame < 60 ? static_cast<int>(frame) / 3 : 0;
        const Color color = colorAt(found[frame], 3, 3);
        EXPECT_NEAR(color[0], 255 * level / 20.0, 1) << frame;
        EXPECT_NEAR(color[1], 255 * level / 20.0, 1) << frame;
    }
}

// Also of particles and of frames that read the previous one: the same each time, at every rate,
// and as stills.
TEST_F(PerformanceExport, isTheSameMovieHoweverItIsDrawn) {
    const std::vector<std::string> episodes{swarm(), smear};
    for (std::size_t which = 0; which < episodes.size(); ++which)
        for (unsigned seed = 0; seed < 2; ++seed) {
            const ExportSegment segment = segmentOf(episodes[which], wild(seed));
            const std::vector<Picture> slow = pictures(segment, 6), fast = pictures(segment, 30);
            ASSERT_GE(fast.size(), 62u);
            EXPECT_EQ(pictures(segment, 30), fast) << which << " " << seed;
            for (std::size_t frame = 0; frame < slow.size(); ++frame)
                EXPECT_EQ(slow[frame], fast.at(5 * frame)) << which << " " << seed << " " << frame;
            EXPECT_EQ(
                timelineStill(segment.program, *device, width, height, segment.timeline, 61.0 / 30),
                fast[61])
                << which << " " << seed;
            EXPECT_NE(fast[50], fast[61]);
        }
}

// Without a change it is the movie of the settings.
TEST_F(PerformanceExport, isThePlainMovieWhereNothingMoves) {
    Performance still;
    still.start.settings.values["level"] = 0.3f;
    still.start.settings.keys.set("level", 1, 0.9f);
    still.start.settings.keys.set("level", 1.4, 0.1f);
    still.start.transport = Transport{.time = 0.7}.played(0);
    still.length = 0.6;
    const ExportSegment performed =
        segmentOf(swarm("trails.at(uv) * fract(u.time) * p.level"), still);
    ExportSegment plain = performed;
    plain.timeline = still.start.settings;
    plain.start = 0.7;
    EXPECT_EQ(pictures(performed, 30), pictures(plain, 30));
}

TEST_F(PerformanceExport, hasTheSoundOfTheClock) {
    Performance made;
    made.start.settings.values["level"] = 1;
    made.start.transport = Transport{.time = 0.25}.played(0);
    const Transport reversed = made.start.transport.withSpeed(-2, 0.05);
    made.changes = {{0.05, reversed},
                    {0.1, Performance::Value{"level", 0.5f}},
                    {0.125, reversed.paused(0.125)}};
    made.length = 0.2;
    const std::string episode =
        shading("1.0") +
        "float2 sound(float t, constant Params& p) { return float2(t, p.level); }\n";
    pictures(segmentOf(episode, made), 30);
    ASSERT_TRUE(recording.hasSound);
    ASSERT_EQ(recording.samples.size(), 2u * 9600);
    PerformanceCursor cursor(std::make_shared<const Performance>(made));
    for (std::size_t sample = 0; sample < 9600; ++sample) {
        const double seconds = static_cast<double>(sample) / 48000;
        const PerformedState& state = cursor.at(seconds);
        const bool isHeard = state.transport.isPlaying;
        const float left = recording.samples[2 * sample], right = recording.samples[2 * sample + 1];
        ASSERT_NEAR(left, isHeard ? state.transport.timeAt(seconds) : 0, 1e-5) << sample;
        ASSERT_EQ(right, isHeard ? state.settings.values.at("level") : 0) << sample;
    }
}
