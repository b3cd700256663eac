#include "TarnwickRender/Performing/TimelineStill.h"
#include "TarnwickRender/VideoExporter.h"
#include "tests/TarnwickRender/RecordingWriter.h"
#include "tests/TarnwickRender/Rendering.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

constexpr ExportPreset small{"small", "Small", 32, 18, 10, 100'000, VideoCodec::h264};
const std::filesystem::path nowhere; // the recording writer makes no file

std::string shading(const std::string& color, const std::string& before = "") {
    return "// @param level 0.5 0 1\n" + before + "float4 shade(float2 uv, " +
           std::string(arguments) + ") {\n    return " + color + ";\n}\n";
}
const std::string passing = shading("float4(u.time * 0.1, uv, 1.0)");

// Louder by its distance from 2 s.
class RisingSound : public FrameInputs {
  public:
    ShaderInputs inputs(double time, const ParamValues&) override {
        return {.audio = {static_cast<float>(time - 2)}};
    }
    void reset() override {}
};

class Exporting : public Rendering {
  protected:
    // The sentence of the error; empty without one.
    std::string exported(const std::vector<ExportSegment>& segments, ExportDetails details = {},
                         const ExportPreset& preset = small) {
        details.makeWriter = recordingWriters(recording);
        details.colorConversion = ColorConversionPlace::writer; // it keeps pixels
        try {
            VideoExporter::export_(segments, preset, *device, nowhere, progress, details);
        } catch (const ExportError& error) {
            EXPECT_NE(recording.status, MovieWriterStatus::completed);
            return error.what();
        }
        EXPECT_EQ(recording.status, MovieWriterStatus::completed);
        return "";
    }
    ExportSegment segment(const std::string& episode, double start, double duration) {
        return {.program = program(episode), .start = start, .duration = duration};
    }
    ExportSegment soundingSegment(double duration) {
        ExportSegment made = segment(
            shading("float4(1.0)", "float2 sound(float t, constant Params& p) { return 0.0; }\n"),
            0, duration);
        made.sound = true;
        return made;
    }
    Picture still(const ExportSegment& segment, double time) {
        return *StillRenderer::render(segment.program, *device, 32, 18, static_cast<float>(time), 0,
                                      segment.timeline.settings().values);
    }

    Recording recording;
    VideoExporter::Progress progress = [](std::int64_t, std::int64_t) { return true; };
};

// The mean difference of two pictures' values.
double difference(const Picture& one, const Picture& other) {
    double sum = 0;
    for (std::size_t at = 0; at < one.bytes.size(); ++at)
        sum += std::abs(one.bytes[at] - other.bytes[at]);
    return sum / static_cast<double>(one.bytes.size());
}

// A swarm that wanders and never comes back.
std::string swarm() {
    return "// @param level 0.5 0 1\n" +
           ParticleEpisode{.count = 40,
                           .fields = "float2 at; float2 way;",
                           .spawn = "float i = float(id); q.at = fract(float2(i * 0.37, i * 0.71));"
                                    "q.way = float2(sin(i), cos(i));",
                           .update = "q.at = fract(q.at + q.way * 0.02 * p.level);",
                           .fade = "return previous.at(uv) * 0.8;"}
               .text();
}

Settings swinging() {
    Settings settings;
    for (int key = 0; key < 20; ++key)
        settings.keys.set("level", key, key % 2 == 0 ? 0.1f : 0.9f);
    return settings;
}

} // namespace

TEST_F(Exporting, drawsTheFramesOfItsSegmentsAtTheirTimes) {
    const std::string mesh = "// @grid 4\nstruct Vertex { float4 position [[position]]; };\n"
                             "Vertex corner(float2 g, " +
                             std::string(arguments) +
                             ") { return {float4(g * sin(u.time), 0, 1)}; }\n"
                             "float4 shade(Vertex v, " +
                             std::string(arguments) + ") { return 1.0; }\n";
    const std::vector<ExportSegment> segments{segment(passing, 1.25, 0.5),
                                              segment(swarm(), 0.5, 0.4), segment(mesh, 2, 0.0)};
    EXPECT_EQ(exported(segments), "");
    ASSERT_EQ(recording.pictures.size(), 10u); // the last has one frame
    for (std::size_t i = 0; i < 10; ++i) {
        const std::size_t which = i < 5 ? 0 : i < 9 ? 1 : 2;
        const double k = static_cast<double>(i) - std::array{0.0, 5.0, 9.0}.at(which);
        EXPECT_EQ(recording.times[i], static_cast<std::int64_t>(i));
        EXPECT_EQ(recording.pictures[i], still(segments[which], segments[which].start + k / 10))
            << i;
    }
    EXPECT_FALSE(recording.hasSound);
}

TEST_F(Exporting, takesValuesAndInputsAtEachFramesTime) {
    ExportSegment values = segment(shading("float4(p.level)"), 1, 0.5);
    Settings rising;
    rising.keys.set("level", 1, 0, KeyframeTracks::Ease::linear);
    rising.keys.set("level", 2, 1);
    values.timeline = rising;
    ExportSegment inputs = segment("float4 shade(float2 uv, " + std::string(arguments) +
                                       ", Inputs in) { return float4(in.audio.x, "
                                       "in.previous(uv).y + 0.1, u.frame == 21, 1.0); }\n",
                                   2, 0.3);
    inputs.inputs = std::make_shared<RisingSound>();
    EXPECT_EQ(exported({values, inputs}), "");
    for (int frame = 0; frame < 5; ++frame)
        EXPECT_NEAR(colorAt(recording.pictures.at(static_cast<std::size_t>(frame)), 3, 3)[0],
                    25.5 * frame, 1);
    for (int frame = 0; frame < 3; ++frame) {
        const Color found =
            colorAt(recording.pictures.at(static_cast<std::size_t>(5 + frame)), 3, 3);
        EXPECT_NEAR(found[0], 25.5 * frame, 1);
        EXPECT_NEAR(found[1], 25.5 * (frame + 1), 2); // its own last frame
        EXPECT_EQ(found[2], frame == 1 ? 255 : 0);
    }
}

TEST_F(Exporting, movesParticlesByTheValuesOfEachStepsTimeAtAnyFrameRate) {
    ExportSegment keyed = segment(swarm(), 1.5, 0.4);
    keyed.timeline = swinging();
    ExportPreset faster = small;
    faster.fps = 20;
    EXPECT_EQ(exported({keyed}), "");
    const std::vector<Picture> slow = recording.pictures;
    recording = {};
    EXPECT_EQ(exported({keyed}, {}, faster), "");
    for (std::size_t i = 0; i < slow.size(); ++i)
        EXPECT_EQ(slow[i], recording.pictures.at(2 * i)) << i;
    const auto still = timelineStill(keyed.program, *device, 32, 18, keyed.timeline, 1.8);
    EXPECT_EQ(slow.at(3), still);
}

TEST_F(Exporting, loopsWithoutAJumpInThePictureOrItsMotion) {
    // A drift that never repeats, and a swarm, which cannot be drawn at any time.
    for (const std::string& episode :
         {shading("float4(0.5 + 0.4 * sin(uv.x * 5.0 + u.time * 1.7), 0.5 + 0.4 * cos(uv.y * 3.0 - "
                  "u.time), fract(0.2 * u.time), 1.0)"),
          swarm()}) {
        recording = {};
        ExportSegment looping = segment(episode, 3, 1);
        looping.loop = 0.4;
        EXPECT_EQ(exported({looping}), "");
        const auto& pictures = recording.pictures;
        ASSERT_EQ(pictures.size(), 10u);
        std::vector<double> steps; // between neighbours, the seam last
        for (std::size_t i = 0; i < 10; ++i)
            steps.push_back(difference(pictures[i], pictures[(i + 1) % 10]));
        const double most = *std::max_element(steps.begin(), steps.end() - 1);
        EXPECT_GT(steps[0], 1);
        EXPECT_LT(steps.back(), most * 1.1);
        EXPECT_GT(steps.back(), steps[0] * 0.5); // nor does it stand still
        // Before the crossfade it is the program itself.
        for (const std::size_t i : {0u, 5u})
            EXPECT_EQ(pictures[i], still(looping, 3 + static_cast<double>(i) / 10));
    }
}

TEST_F(Exporting, crossfadesOverHalfOfASegmentAtMost) {
    ExportSegment fading = segment(shading("float4(u.time < 5.0 ? 0.0 : 1.0)"), 5, 0.8);
    fading.loop = 7;
    EXPECT_EQ(exported({fading}), "");
    std::vector<int> greys;
    for (const Picture& picture : recording.pictures)
        greys.push_back(colorAt(picture, 0, 0)[0]);
    EXPECT_EQ(greys, (std::vector{255, 255, 255, 255, 204, 153, 102, 51}));
    recording = {};
    fading.loop = -1;
    EXPECT_EQ(exported({fading}), "");
    EXPECT_EQ(colorAt(recording.pictures.back(), 0, 0)[0], 255);
}

TEST_F(Exporting, laysThePictureIntoTheFrameAndTheOverlayOverBoth) {
    const std::shared_ptr<gpu::Texture> overlay = device->newTexture({.width = 32, .height = 18});
    const std::array<std::uint8_t, 4> halfRed{0, 0, 128, 128};
    for (std::uint32_t x = 16; x < 32; ++x)
        for (std::uint32_t y = 0; y < 18; ++y)
            overlay->replace({.x = x, .y = y, .width = 1, .height = 1}, 0, halfRed.data(), 4);
    ExportSegment laid = segment(
        shading("u.resolution.x == 16.0 ? float4(0.0, uv.y > 0.5, 1.0, 1.0) : float4(1.0)"), 0, 0);
    laid.layout = FrameLayout{.picture = {.x = 8, .y = 2, .width = 16, .height = 10},
                              .background = {.red = 0, .green = 0.2, .blue = 0},
                              .overlays = {nullptr, overlay},
                              .overlayIndex = 1};
    EXPECT_EQ(exported({laid}), "");
    const Picture& frame = recording.pictures.at(0);
    EXPECT_EQ(colorAt(frame, 0, 0), (Color{0, 51, 0}));
    EXPECT_EQ(colorAt(frame, 7, 3), (Color{0, 51, 0}));
    EXPECT_EQ(colorAt(frame, 8, 2), (Color{0, 255, 255})); // its top
    EXPECT_EQ(colorAt(frame, 8, 11), (Color{0, 0, 255}));
    EXPECT_EQ(colorAt(frame, 8, 12), (Color{0, 51, 0}));
    EXPECT_EQ(colorAt(frame, 31, 17), (Color{128, 25, 0}));
    EXPECT_EQ(colorAt(frame, 23, 11), (Color{128, 0, 127}));

    // A page turns while the program plays on; none is shown where there is none of its number.
    laid.start = 5;
    laid.duration = 0.2;
    laid.layout->overlayIndexAt = [](double time) { return time > 5.05 ? 1 : 2; };
    recording = {};
    EXPECT_EQ(exported({laid}), "");
    EXPECT_EQ(colorAt(recording.pictures.at(0), 31, 17), (Color{0, 51, 0}));
    EXPECT_EQ(colorAt(recording.pictures.back(), 31, 17), (Color{128, 25, 0}));
}

TEST_F(Exporting, putsTheWatermarkIntoItsCornerAlone) {
    ExportSegment marked = segment(shading("float4(0.0, 0.0, 1.0, 1.0)"), 0, 0);
    marked.watermark = true;
    const auto side = [&](std::int64_t width, std::int64_t height) {
        recording = {};
        ExportPreset preset = small;
        preset.width = width;
        preset.height = height;
        EXPECT_EQ(exported({marked}, {}, preset), "");
        return recording.pictures.at(0);
    };
    const Picture wide = side(320, 180), tall = side(180, 320);
    const auto isFire = [](const Color& color) { return color[0] > 200 && color[2] < 120; };
    EXPECT_TRUE(isFire(colorAt(wide, 305, 166))) << colorAt(wide, 305, 166)[0];
    EXPECT_TRUE(isFire(colorAt(tall, 15, 35))) << colorAt(tall, 15, 35)[0];
    for (const Picture* picture : {&wide, &tall})
        EXPECT_EQ(colorAt(*picture, picture->width / 2, picture->height / 2), (Color{0, 0, 255}));
    EXPECT_EQ(colorAt(wide, 15, 35), (Color{0, 0, 255}));
}

TEST_F(Exporting, writesTheSoundOfEachSegmentAndSilenceBetween) {
    const std::string sounding =
        shading("float4(1.0)", "float2 sound(float t, constant Params& p) {"
                               " return float2(t * 0.01, p.level); }\n");
    ExportSegment first = segment(sounding, 1, 0.3), second = first, third = first;
    first.sound = third.sound = true;
    third.soundValues = ParamValues{{"level", -0.25f}};
    third.soundStart = 20;
    EXPECT_EQ(exported({first, second, third}), "");
    const auto& samples = recording.samples;
    ASSERT_EQ(samples.size(), 2u * 43200);
    EXPECT_EQ(samples[0], 0.01f);
    EXPECT_NEAR(samples[2 * 14399], 0.01 * (1 + 14399.0 / 48000), 1e-6);
    EXPECT_EQ(samples[1], 0.5f);
    EXPECT_EQ(std::count(samples.begin() + 28800, samples.begin() + 57600, 0.0f), 28800);
    EXPECT_NEAR(samples[57600], 0.2, 1e-6);
    EXPECT_EQ(samples[57601], -0.25f);
}

TEST_F(Exporting, crossfadesTheSoundOfALoopWhereAsked) {
    const std::string sounding =
        shading("float4(1.0)", "float2 sound(float t, constant Params& p) {"
                               " return 0.9 * float2(sin(t * 70.7), cos(t * t * 50.0)); }\n");
    const auto samplesOf = [&](double start, double duration, bool loopSound) {
        ExportSegment looping = segment(sounding, start, duration);
        looping.sound = true;
        looping.loop = 1.2;
        looping.loopSound = loopSound;
        recording = {};
        EXPECT_EQ(exported({looping}), "");
        return recording.samples;
    };
    // What is heard, of samples that go on beyond both ends as the loop does.
    const auto heard = [&](const std::vector<float>& samples) {
        const auto leadIn = 2 * recording.sound.leadIn, length = 2 * *recording.sound.length;
        const auto begin = samples.begin() + leadIn, end = begin + length;
        EXPECT_TRUE(std::equal(samples.begin(), begin, end - leadIn));
        EXPECT_TRUE(std::equal(end, samples.end(), begin));
        EXPECT_GT(samples.end() - end, 2 * 2048);
        return std::vector(begin, end);
    };
    const auto own = samplesOf(3, 2.5, false), before = samplesOf(1.8, 1.2, false);
    const auto mixed = heard(samplesOf(3, 2.5, true));
    ASSERT_EQ(mixed.size(), own.size());
    const std::size_t first = own.size() - before.size();
    EXPECT_TRUE(
        std::equal(own.begin(), own.begin() + static_cast<std::ptrdiff_t>(first), mixed.begin()));
    for (std::size_t at = first; at < mixed.size(); at += 1001) {
        const double weight = std::floor(static_cast<double>(mixed.size() - at + 1) / 2) / 57601;
        EXPECT_NEAR(mixed[at], weight * own[at] + (1 - weight) * before[at - first], 1e-3) << at;
    }
    for (const std::size_t side : {0u, 1u}) {
        const auto step = [&](const std::vector<float>& samples, std::size_t from) {
            return std::abs(samples[(from + 2) % samples.size()] - samples[from]);
        };
        float most = 0;
        for (std::size_t at = side; at + 2 < mixed.size(); at += 2)
            most = std::max(most, step(mixed, at));
        EXPECT_LE(step(mixed, mixed.size() - 2 + side), most);
        EXPECT_GT(step(own, own.size() - 2 + side), 20 * most); // a click
    }
}

TEST_F(Exporting, saysWhyItCannotStart) {
    const ExportSegment good = segment(passing, 0, 0.1);
    const std::string start = "Export could not start: ";
    EXPECT_EQ(exported({}), start + "nothing to export");
    ExportPreset seven = small;
    seven.fps = 7;
    EXPECT_EQ(exported({good}, {}, seven), start + "7 fps does not divide the audio rate");
    for (const auto& presets : {ExportPreset::all(), ExportPreset::pro()})
        for (const ExportPreset& preset : presets)
            EXPECT_EQ(48000 % preset.fps, 0) << preset.id;
    ExportSegment laid = good;
    laid.layout = FrameLayout{.picture = {.width = 32, .height = 18}, .overlays = {nullptr}};
    laid.layout->overlayIndex = 1;
    EXPECT_EQ(exported({laid}), start + "overlay 1 is wanted of 1, counted from 0");
    laid.layout->overlays.clear();
    laid.layout->picture.x = 1;
    EXPECT_EQ(exported({laid}), start + "a layout's picture does not lie within the frame");
    for (const double duration : {HUGE_VAL, std::nan(""), 1e300}) {
        ExportSegment endless = good;
        endless.duration = duration;
        EXPECT_EQ(exported({endless}), start + "the duration is infinite, NaN or too large");
    }
    recording.takesVideo = false;
    EXPECT_EQ(exported({good}), start + "the writer rejected the video settings");
    const ExportSegment sounding = soundingSegment(1);
    recording = {.takesAudio = false};
    EXPECT_EQ(exported({sounding}), start + "the writer rejected the audio settings");
}

TEST_F(Exporting, passesOnHowTheWriterFails) {
    const ExportSegment sounding = soundingSegment(1);
    const std::vector<std::pair<Recording, std::string>> cases{
        {{.starts = false}, "No space left on device"},
        {{.hasPool = false}, "no pixel buffer pool"},
        {{.hasBuffers = false}, "could not get a pixel buffer"},
        {{.videoIsReady = false}, "the writer stalled waiting for the vide track"},
        {{.audioIsReady = false}, "the writer stalled waiting for the soun track"},
        {{.refusesFrame = 3}, "append failed at frame 3"},
        {{.refusesSample = 4800}, "audio failed at frame 1"},
        {{.failsAtFrame = 2}, "No space left on device"},
        {{.failsAtFrame = 2, .error = {}}, "unknown"},
        {{.failsAtEnd = true}, "No space left on device"},
    };
    // The pictures wait for the sound's error.
    progress = [&](std::int64_t done, std::int64_t total) {
        if (done == total)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return true;
    };
    for (const auto& [behaviour, words] : cases) {
        recording = behaviour;
        EXPECT_EQ(exported({sounding}, {.patience = std::chrono::milliseconds(30)}),
                  "Writing the video failed: " + words);
        EXPECT_EQ(recording.isFinished, behaviour.failsAtEnd) << words;
    }
}

TEST_F(Exporting, endsWhenTheProgressIsToldToStop) {
    std::vector<std::int64_t> told;
    progress = [&](std::int64_t done, std::int64_t total) {
        EXPECT_EQ(total, 100);
        told.push_back(done);
        return done < 1;
    };
    const ExportSegment sounding = soundingSegment(10);
    EXPECT_EQ(exported({sounding}), "Export cancelled.");
    EXPECT_EQ(told, (std::vector<std::int64_t>{0, 1}));
    EXPECT_FALSE(recording.isFinished);
}

TEST_F(Exporting, drawsAPartAsItIsInTheWhole) {
    const std::string memory = "float4 shade(float2 uv, " + std::string(arguments) +
                               ", Inputs in) { return 0.9 * in.previous(uv + 0.01) + 0.1 * "
                               "float4(fract(u.time), uv, 1.0); }\n";
    std::vector<ExportSegment> segments{segment(passing, 0, 5), segment(swarm(), 2, 11),
                                        segment(memory, 0, 12)};
    segments[1].loop = segments[2].loop = 0.5;
    segments[1].timeline = swinging();
    EXPECT_EQ(exported(segments), "");
    const Recording all = recording;
    const std::int64_t stretch = stretchLength(VideoExporter::videoSettings(small));
    ASSERT_EQ(stretch, 100);
    for (const std::int64_t first : {stretch, 2 * stretch}) {
        recording = {};
        EXPECT_EQ(exported(segments, {.frames = FrameRange{first, first + 70}}), "");
        for (std::size_t i = 0; i < 70; ++i) {
            const auto at = static_cast<std::size_t>(first) + i;
            EXPECT_EQ(recording.times[i], static_cast<std::int64_t>(at));
            ASSERT_EQ(recording.pictures[i], all.pictures[at]) << at;
        }
    }
    recording = {};
    EXPECT_EQ(exported(segments, {.frames = FrameRange{7, 20}}),
              "Export could not start: a part begins at a multiple of 100 frames");
    EXPECT_EQ(exported(segments, {.frames = FrameRange{200, 300}}),
              "Export could not start: the part does not lie within the movie");
}

// Particles, feedback and sound go on as they would have without the loss.
TEST_F(Exporting, goesOnAfterTheDeviceWasLost) {
    const std::string memory = "float4 shade(float2 uv, " + std::string(arguments) +
                               ", Inputs in) { return 0.9 * in.previous(uv + 0.01) + 0.1 * "
                               "float4(fract(u.time), uv, 1.0); }\n";
    const std::string tone = "float2 sound(float t, constant Params& p) { return sin(t * 99); }\n";
    const auto segments = [&] {
        std::vector<ExportSegment> made{segment(swarm(), 2, 3), segment(memory, 0, 2),
                                        segment(shading("float4(u.time)", tone), 0, 20)};
        made[0].loop = 0.5;
        made[2].sound = true;
        return made;
    };
    EXPECT_EQ(exported(segments()), "");
    const Recording undisturbed = recording;
    recording = {};
    std::shared_ptr<gpu::Device> kept = device; // the export's first
    std::size_t losses = 0;
    constexpr std::array<std::int64_t, 4> lossesAt{12, 40, 120, 245}; // frames
    progress = [&](std::int64_t done, std::int64_t) {
        if (losses < lossesAt.size() && done == lossesAt[losses] && !device->isLost())
            device->lose();
        return true;
    };
    const auto reopen = [&] {
        ++losses;
        device = gpu::Device::systemDefault();
        return ExportStage{.device = device, .segments = segments()};
    };
    EXPECT_EQ(exported(segments(), {.reopen = reopen}), "");
    EXPECT_EQ(losses, lossesAt.size());
    EXPECT_EQ(recording.times, undisturbed.times);
    EXPECT_EQ(recording.samples, undisturbed.samples);
    for (std::size_t at = 0; at < undisturbed.pictures.size(); ++at)
        ASSERT_EQ(recording.pictures.at(at), undisturbed.pictures[at]) << at;
}

TEST_F(Exporting, opensTheDeviceAgainThatWasLostBefore) {
    const auto segments = [&] { return std::vector{segment(passing, 0, 1)}; };
    const std::shared_ptr<gpu::Device> kept = device;
    const std::vector<ExportSegment> first = segments();
    EXPECT_EQ(exported(first), "");
    const Recording undisturbed = std::exchange(recording, {});
    device->lose();
    EXPECT_EQ(exported(first), "Export could not start: no command queue");
    recording = {};
    const auto reopen = [&] {
        device = gpu::Device::systemDefault();
        return ExportStage{.device = device, .segments = segments()};
    };
    EXPECT_EQ(exported(first, {.reopen = reopen}), "");
    EXPECT_EQ(recording.pictures, undisturbed.pictures);
}

TEST_F(Exporting, endsIfTheDeviceIsLostAgainAtTheSameFrame) {
    const auto lossAt = [&](std::int64_t frame) {
        progress = [&, frame](std::int64_t done, std::int64_t) {
            if (done == frame)
                device->lose();
            return true;
        };
    };
    std::shared_ptr<gpu::Device> kept = device;
    const auto segments = [&] { return std::vector{segment(passing, 0, 5)}; };
    lossAt(7);
    EXPECT_EQ(exported(segments()), "The GPU failed while drawing frame 7.");
    device = gpu::Device::systemDefault();
    kept = device;
    lossAt(9);
    const auto reopen = [&] {
        device = gpu::Device::systemDefault();
        ExportStage stage{.device = device, .segments = segments()};
        device->lose();
        return stage;
    };
    recording = {};
    EXPECT_EQ(exported(segments(), {.reopen = reopen}),
              "The device was lost twice while it drew frame 9.");
}
