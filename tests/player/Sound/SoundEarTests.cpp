#include "TarnwickCore/ShaderAssembler.h"
#include "player/Sound/SoundEar.h"
#include "tests/player/Sound/Playing.h"

namespace tarnwick::player {
namespace {

class SoundEarTest : public testing::Test {
  protected:
    std::array<float, 4> bands() const {
        const auto newest = levels.newest();
        return newest ? newest->bands : std::array<float, 4>{};
    }

    Playing device;
    LiveLevels levels;
    int pauses = 0;
    SoundEar ear{device.ring,
                 device.clock,
                 levels,
                 {.tell = [](const std::string& sentence) { ADD_FAILURE() << sentence; },
                  .pausedLevelsCame = [this] { ++pauses; }}};
};

TEST_F(SoundEarTest, hearsTheChosenSoundWhenItIsPlayed) {
    const SoundRecord record{
        .own = tone(1000), .file = tone(100), .transport = Transport{}.played(device.host)};
    device.renderer.show(record);
    const auto listen = [&] {
        for (int step = 0; step < 60; ++step) {
            device.play(0.01);
            ear.step(device.host, record, device.renderer.lastJump());
        }
    };
    listen();
    EXPECT_GT(bands()[1], 0.9);
    EXPECT_LT(bands()[0], 0.2);
    ear.choose({.kind = SoundInput::Kind::file, .name = "any"}, device.host);
    EXPECT_EQ(bands(), (std::array<float, 4>{}));
    listen();
    EXPECT_GT(bands()[0], 0.9);
    EXPECT_LT(bands()[1], 0.2);
}

// In a pause, the levels of a file are those that playing up to it gives, and are told once.
TEST_F(SoundEarTest, hearsAFileAtTheTimeOfAPause) {
    const auto file = std::make_shared<FunctionSound>([](double time) {
        return time < 3 ? 0 : 0.5 * std::sin(2 * std::numbers::pi * 1000 * time);
    });
    const auto pause = [&](double time) {
        for (int step = 0; step < 3; ++step)
            ear.step(device.host,
                     {.file = file, .transport = Transport{}.sought(time, device.host)}, 0);
    };
    ear.choose({.kind = SoundInput::Kind::file, .name = "any"}, device.host);
    pause(2.9);
    EXPECT_EQ(bands(), (std::array<float, 4>{}));
    pause(3.5);
    EXPECT_EQ(pauses, 2);
    AudioAnalyzer analyzer(soundRate, ShaderAssembler::spectrumBins);
    for (int frame = 1; frame <= 120; ++frame) {
        std::vector<float> window(2 * AudioAnalyzer::window);
        const double end = 1.5 + frame / 60.0;
        file->samples(end - static_cast<double>(AudioAnalyzer::window) / soundRate, soundRate,
                      window);
        analyzer.analyse(AudioAnalyzer::mono(window), 1.0 / 60);
    }
    for (std::size_t band = 0; band < 4; ++band)
        EXPECT_NEAR(bands()[band], analyzer.bands()[band], 1e-3) << band;
    file->isThere = false;
    pause(4);
    EXPECT_EQ(pauses, 2);
}

} // namespace
} // namespace tarnwick::player
