#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "TarnwickPlatform/Text/Text.h"
#include "TarnwickRender/Targets/PictureTarget.h"
#include "saver/TarnwickSaverView.h"
#include "tests/saver/TestBundle.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

namespace tarnwick {
namespace {

constexpr Rectangle smallFrame{0, 0, 64, 32};

// A saver that draws off screen, on a clock that the test sets.
class DrawnSaver {
  public:
    explicit DrawnSaver(std::string_view shader, std::string_view settings = "",
                        ScreenKind kind = ScreenKind::fullScreen,
                        const std::function<void(const std::filesystem::path&)>& addTo = {})
        : files_(shader, settings), added_(add(addTo)),
          view(smallFrame, kind, files_.bundle(), [this] { return now; }) {
        attach();
    }

    void reopen() {
        view.reopen();
        attach();
    }

    // Draws one frame at the host's time `at` and gives its middle pixel: red, green, blue in
    // 0..255.
    std::array<int, 3> drawAt(double at) {
        now = at;
        view.metal()->draw();
        const Picture picture = target->lastPicture();
        const std::size_t middle = picture.height / 2 * picture.bytesPerRow + picture.width / 2 * 4;
        return {picture.bytes.at(middle + 2), picture.bytes.at(middle + 1),
                picture.bytes.at(middle)};
    }

  private:
    void attach() {
        if (view.metal() == nullptr)
            return;
        auto owned = std::make_unique<PictureTarget>(*view.metal()->device(), PixelSize{64, 32});
        target = owned.get();
        view.metal()->setTarget(std::move(owned));
    }
    bool add(const std::function<void(const std::filesystem::path&)>& addTo) const {
        if (addTo)
            addTo(files_.bundle().folder());
        return addTo != nullptr;
    }

    TestBundle files_;
    bool added_; // files to the bundle, before the view reads it

  public:
    double now = 0;
    TarnwickSaverView view;
    PictureTarget* target = nullptr;
};

#define SHADE "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) "

TEST(SaverView, advancesItsClockByATenthOfASecondAtMost) {
    DrawnSaver saver(SHADE
                     "{ return float4(u.time, float(u.frame) / 255.0, u.timeDelta * 15.0, 1.0); }");
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    EXPECT_EQ(saver.drawAt(5000), (std::array{0, 0, 128})); // timeDelta is 1/30 in every frame
    saver.drawAt(5000.05);
    EXPECT_NEAR(saver.view.clock(), 0.05, 1e-9);
    const auto slept = saver.drawAt(5000.05 + 3600);
    EXPECT_NEAR(saver.view.clock(), 0.15, 1e-9);
    EXPECT_NEAR(slept[0], 0.15 * 255, 1);
    EXPECT_EQ(slept[1], 4); // 30 a second, the fraction dropped
    EXPECT_EQ(slept[2], 128);
    saver.drawAt(5000.05 + 3600 - 0.1); // a step back is taken as it is
    EXPECT_NEAR(saver.view.clock(), 0.05, 1e-9);
}

TEST(SaverView, keepsItsClockWhileThereIsNothingToDrawInto) {
    const TestBundle files(SHADE "{ return float4(1.0); }");
    double now = 0;
    TarnwickSaverView view(smallFrame, ScreenKind::fullScreen, files.bundle(), [&] { return now; });
    ASSERT_NE(view.metal(), nullptr);
    for (; now < 1; now += 0.05)
        view.metal()->draw();
    EXPECT_EQ(view.clock(), 0);
}

TEST(SaverView, givesTheDrawablesSizeAndItsMiddleAsMouse) {
    DrawnSaver saver(
        SHADE "{ return float4(u.resolution / 255.0, (u.mouse.x + u.mouse.y) / 255.0, 1.0); }");
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    EXPECT_EQ(saver.drawAt(0), (std::array{64, 32, 48}));
    saver.view.setFrame({0, 0, 100, 50});
    EXPECT_EQ(saver.drawAt(0), (std::array{100, 50, 75}));
    EXPECT_EQ(saver.target->lastPicture().width, 100u);
}

constexpr const char* twoLevels =
    "// @param level 0.2 0.0 1.0 Red\n"
    "// @param depth 0.4 0.0 1.0 Green\n" SHADE "{ return float4(p.level, p.depth, 0.0, 1.0); }";

TEST(SaverView, drawsWithTheSettingsValuesAndKeys) {
    DrawnSaver plain(twoLevels);
    ASSERT_FALSE(plain.view.failure()) << *plain.view.failure();
    EXPECT_EQ(plain.drawAt(0), (std::array{51, 102, 0}));
    EXPECT_EQ(plain.view.settings(), Settings{});

    DrawnSaver tuned(twoLevels, R"({"name": "Tuned", "values": {"level": 0.6}, "keys": {"tracks": {
        "depth": [{"time": 0, "value": 0, "ease": "linear"}, {"time": 0.2, "value": 7, "ease": "hold"}],
        "gone": [{"time": 0, "value": 1, "ease": "hold"}]}}})");
    EXPECT_EQ(tuned.drawAt(0), (std::array{153, 0, 0}));
    EXPECT_NEAR(tuned.drawAt(0.1)[1], 128, 1); // half way to 1, which 7 is cut down to
    EXPECT_EQ(tuned.drawAt(0.3), (std::array{153, 255, 0}));
    EXPECT_EQ(tuned.view.settings().name, "Tuned");
    EXPECT_FALSE(tuned.view.settings().keys.tracks.contains("gone"));

    EXPECT_EQ(tuned.view.settingsRemarks().size(), 2u); // the key of 7, and the track of "gone"

    DrawnSaver half(twoLevels, R"({"name": "Half", "values": {"level": 0.6}})");
    EXPECT_EQ(half.view.settingsRemarks(),
              std::vector<std::string>{"The settings cannot be read, so the defaults are used: "
                                       "The document has no \"keys\"."});
    EXPECT_EQ(half.drawAt(0), (std::array{51, 102, 0}));
    EXPECT_EQ(half.view.settings().name, "Tarnwick");
}

// Pictures, and episodes with their own settings and channels; a file that cannot be read is black.
TEST(SaverView, showsTheChannelsOfItsBundle) {
#define READING "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) "
    const auto addChannels = [](const std::filesystem::path& bundle) {
        const auto folder = bundle / "Channels";
        std::filesystem::create_directory(folder);
        writePNG(filledPicture(4, 4, {0, 0, 200}), folder / "0.png");
        writePNG(filledPicture(4, 4, {0, 100, 0}), folder / "3.1.png");
        std::ofstream(folder / "2.png") << "no picture";
        std::ofstream(folder / "3.metal")
            << "// @param blue 0 0 1\n" READING
               "{ return float4(0.0, in.channel(1, uv).g, p.blue, 1.0); }";
        std::ofstream(folder / "3.json")
            << R"({"name": "", "values": {"blue": 0.2}, "keys": {"tracks": {}}})";
    };
    DrawnSaver saver(READING "{ return float4(in.channel(0, uv).r, in.channel(3, uv).gb, 1.0); }",
                     "", ScreenKind::fullScreen, addChannels);
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    EXPECT_EQ(saver.drawAt(0), (std::array{200, 100, 51}));
    saver.view.setFrame({0, 0, 100, 50});
    EXPECT_EQ(saver.drawAt(0.05), (std::array{200, 100, 51}));
    ASSERT_EQ(saver.view.settingsRemarks().size(), 1u);
    EXPECT_TRUE(saver.view.settingsRemarks()[0].starts_with("Channel 2 is black: "));
}

// `fields` follow the particle's place; each frame shows the `number` of the step that it is at.
std::string particleEpisode(std::string_view count, std::string_view fields,
                            const std::string& number = "float(u.frame)") {
    const std::string rest = "constant Uniforms& u, constant Params& p";
    return "// @particles " + std::string(count) + "\nstruct Particle { float2 at; " +
           std::string(fields) +
           " };\nParticle spawn(uint id, constant Params& p) { Particle q; "
           "q.at = 0.5; return q; }\nvoid update(thread Particle& q, uint id, " +
           rest + ") {}\nfloat3 place(Particle q, " + rest +
           ") { return float3(q.at, 9.0); }\n"
           "float4 ink(Particle q, float2 at, " +
           rest + ") { return " + number +
           " / 255.0; }\n"
           "float4 shade(float2 uv, " +
           rest + ", Trails trails) { return trails.at(uv); }\n";
}

TEST(SaverView, playsParticlesWithFourStepsAFrameAtMost) {
    DrawnSaver saver(particleEpisode("1", ""));
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    EXPECT_EQ(saver.drawAt(0)[0], 0);
    EXPECT_EQ(saver.drawAt(0.05)[0], 3);
    EXPECT_EQ(saver.drawAt(0.15)[0], 7); // six steps on, of which four are made
    EXPECT_EQ(saver.drawAt(0.15)[0], 9);
    EXPECT_FALSE(saver.view.absence());
}

// Of the window, and of the guest that draws smaller pictures.
TEST(SaverView, goesOnWithItsParticlesAtAnotherSize) {
    DrawnSaver saver(particleEpisode("1", ""));
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    saver.drawAt(0);
    EXPECT_EQ(saver.drawAt(0.05)[0], 3);
    saver.view.setFrame({0, 0, 100, 50});
    EXPECT_EQ(saver.drawAt(0.10)[0], 6);
    saver.view.metal()->setDrawableScale(0.5);
    EXPECT_EQ(saver.drawAt(0.15)[0], 9);
    EXPECT_EQ(saver.drawAt(0.15)[0], 9); // the trails, scaled
    EXPECT_EQ(saver.target->lastPicture().width, 100u);
    EXPECT_FALSE(saver.view.absence());
}

TEST(SaverView, movesParticlesByTheKeysAtEachStepsTime) {
    DrawnSaver saver("// @param level 0 0 60\n" + particleEpisode("1", "", "p.level"),
                     R"({"name": "", "values": {}, "keys": {"tracks": {"level": [
        {"time": 0, "value": 0, "ease": "linear"}, {"time": 1, "value": 60, "ease": "hold"}]}}})");
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    EXPECT_EQ(saver.drawAt(0)[0], 0);
    EXPECT_EQ(saver.drawAt(0.1)[0], 4); // of the four steps' last, where the frame's own is 6
}

TEST(SaverView, isBlackAndSaysWhyWhereItsRunCannotBeMade) {
    DrawnSaver saver(particleEpisode("4000000", "float4 more[4000];"));
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    EXPECT_EQ(saver.drawAt(0), (std::array{0, 0, 0}));
    EXPECT_NE(saver.view.absence().value_or("").find("4000000 particles"), std::string::npos);
}

TEST(SaverView, asksForHalfTheFramesInThePreview) {
    const DrawnSaver full(SHADE "{ return float4(0.0); }");
    const DrawnSaver preview(SHADE "{ return float4(0.0); }", "", ScreenKind::preview);
    ASSERT_NE(full.view.metal(), nullptr);
    EXPECT_EQ(full.view.metal()->preferredFramesPerSecond, 30);
    EXPECT_EQ(preview.view.metal()->preferredFramesPerSecond, 15);
}

TEST(SaverView, saysWhatFailed) {
    const auto failure = [](std::string_view shader) {
        const DrawnSaver saver(shader);
        EXPECT_EQ(saver.view.metal(), nullptr);
        return saver.view.failure().value_or("");
    };
    EXPECT_EQ(failure(""), "The saver has no shader in it.");
    EXPECT_EQ(failure(SHADE "{ return 1; } // \xFF"), "The saver has no shader in it.");
    const std::string broken = failure(SHADE "{ return colour; }");
    EXPECT_TRUE(broken.starts_with("The shader didn't compile: ")) << broken;
    EXPECT_NE(broken.find("shader.metal:1:"), std::string::npos) << broken;
    EXPECT_TRUE(broken.ends_with("use of undeclared identifier 'colour'")) << broken;
    EXPECT_EQ(failure("int nothing;"), "The shader didn't compile: 'shade' is not defined");
    EXPECT_EQ(
        failure("vec3 c;\n" SHADE "{ return 1; }"),
        "The shader didn't compile: shader.metal:1:1: unknown type name 'vec3' (vec3 is float3 "
        "in Metal)");

    setenv("TARNWICK_DEVICE", "no such device", 1);
    const std::string none = failure(SHADE "{ return float4(1.0); }");
    EXPECT_TRUE(none.starts_with("No Metal device. TARNWICK_DEVICE is \"no such device\"")) << none;
    unsetenv("TARNWICK_DEVICE");
}

TEST(SaverView, drawsItsFailureInABandAcrossTheMiddle) {
    for (const ScreenKind kind : {ScreenKind::fullScreen, ScreenKind::preview}) {
        const TestBundle files("");
        const TarnwickSaverView view({0, 0, 500, 200}, kind, files.bundle());
        Picture drawn = blackPicture({500, 200}), expected = drawn;
        std::ranges::fill(drawn.bytes, std::uint8_t{77});
        view.drawRect(drawn);
        drawCenteredText(expected, "The saver has no shader in it.",
                         kind == ScreenKind::preview ? 9 : 18, {40, 60, 420, 80});
        EXPECT_EQ(drawn, expected);
    }
}

TEST(SaverView, opensALostDeviceAgainAtTheTimeOfItsClock) {
    DrawnSaver saver(SHADE "{ return float4(u.time, 0.5, 0.0, 1.0); }");
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    saver.drawAt(0);
    saver.drawAt(0.1);
    EXPECT_FALSE(saver.view.hasLostDevice());
    saver.view.metal()->device()->lose();
    EXPECT_TRUE(saver.view.hasLostDevice());
    saver.reopen();
    ASSERT_NE(saver.view.metal(), nullptr);
    EXPECT_FALSE(saver.view.hasLostDevice());
    EXPECT_NEAR(saver.drawAt(0.2)[0], 0.2 * 255, 1);

    // Lost again a minute later, and then too soon.
    saver.drawAt(61);
    saver.view.metal()->device()->lose();
    saver.reopen();
    ASSERT_FALSE(saver.view.failure()) << *saver.view.failure();
    saver.drawAt(62);
    saver.view.metal()->device()->lose();
    saver.reopen();
    EXPECT_EQ(saver.view.failure(),
              "The device was lost twice within a minute while it drew this episode.");
}

} // namespace
} // namespace tarnwick
