#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickRender/AudioRenderer.h"
#include "player/Sound/PerformedSound.h"
#include "tests/player/DeviceTest.h"
#include "tests/player/Sound/Playing.h"

#include <cmath>

namespace tarnwick::player {
namespace {

class EpisodeSoundTest : public DeviceTest {
  protected:
    void SetUp() override {
        DeviceTest::SetUp();
        if (!device)
            return;
        sounding = program("// @param tone 440 20 2000 Hertz\n"
                           "float2 sound(float t, constant Params& p) {\n"
                           "    float wave = sin(6.2831853 * fract(p.tone * t));\n"
                           "    return float2(0.6 * wave, 0.3 * wave * wave);\n}\n"
                           "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                           "    return float4(1.0);\n}\n");
    }
    std::shared_ptr<EpisodeSound> sound(float hertz) const {
        return std::make_shared<EpisodeSound>(sounding, std::make_shared<KernelDevice>(device),
                                              ParamValues{{"tone", hertz}});
    }
    std::vector<float> offline(double start, double duration, float hertz) const {
        return AudioRenderer::render(sounding, *device, start, duration, {{"tone", hertz}})
            .value_or(std::vector<float>{});
    }

    std::shared_ptr<const ShaderProgram> sounding;
};

// From each sixteenth of a second on, bit by bit.
TEST_F(EpisodeSoundTest, isTheSoundOfAnExportHoweverItIsCut) {
    const auto played = sound(440);
    for (const std::int64_t part : {7, 48, 160}) {
        const std::int64_t first = part * soundRate / 16;
        const auto exported = offline(static_cast<double>(part) / 16, 1.0 / 16, 440);
        std::vector<float> cut;
        for (std::int64_t at = 0; at < soundRate / 16; at += 300) {
            std::vector<float> samples(600);
            played->samples(static_cast<double>(first + at) / soundRate, soundRate, samples);
            cut.insert(cut.end(), samples.begin(), samples.end());
        }
        EXPECT_EQ(cut, exported) << part;
    }
}

// What the device plays from the start, through a change of a slider, is the sound of an export
// with these values, but for the rounding of times within a second.
TEST_F(EpisodeSoundTest, isPlayedAsItIsExported) {
    Playing playing;
    const Transport transport = Transport{}.played(playing.host);
    auto played = sound(440);
    for (const float hertz : {440.0f, 311.0f}) {
        played = played->with({{"tone", hertz}});
        playing.show(played, transport);
        playing.play(settled);
        const auto first = static_cast<std::int64_t>(std::lround(playing.wanted()));
        const auto frames = playing.play(2);
        const auto exported = offline(0, 8, hertz);
        std::int64_t best = -1; // the place of the frames, a frame or two around the wanted one
        for (std::int64_t place = first - 3; place <= first + 3; ++place) {
            double worst = 0;
            for (std::size_t at = 0; at < frames.size(); ++at)
                for (std::size_t side = 0; side < 2; ++side)
                    worst = std::max<double>(
                        worst,
                        std::abs(frames[at].own[side] -
                                 exported[2 * (static_cast<std::size_t>(place) + at) + side]));
            if (worst < 0.005)
                best = place;
        }
        EXPECT_GE(best, 0) << hertz;
    }
}

// A frame of the picture of a second or more, while parts of the sound are computed.
TEST_F(EpisodeSoundTest, doesNotWaitForTheFrameThatIsDrawn) {
    const auto slow =
        program("float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                "    float x = uv.x;\n"
                "    for (int i = 0; i < 4000; ++i) x = fract(sin(x * 12.9) * 43758.5);\n"
                "    return float4(x);\n}\n");
    const auto played = sound(440);
    played->prepare();
    const auto queue = device->newCommandQueue();
    const auto target = device->newTexture({.format = ShaderProgram::pixelFormat,
                                            .width = 256,
                                            .height = 256,
                                            .usage = {.renderTarget = true}});
    auto commands = queue->commandBuffer();
    auto encoder = commands->renderCommandEncoder({.color = {.texture = target.get()}});
    slow->draw(*encoder, {}, {});
    encoder->endEncoding();
    const double begin = currentMediaTime();
    commands->commit();
    std::vector<float> samples(soundRate / 8);
    for (int part = 0; part < 8; ++part)
        played->samples(part, soundRate, samples);
    const double computed = currentMediaTime() - begin;
    commands->waitUntilCompleted();
    const double drawn = currentMediaTime() - begin;
    EXPECT_LT(computed, 0.5 * drawn) << drawn;
}

// Second by second the samples of an export from its beginning, whose clock stands at first.
TEST_F(EpisodeSoundTest, isHeardInAReplayAsItIsExported) {
    Performance performance{.start = {.settings = {.values = {{"tone", 440.0f}}}}, .length = 5};
    performance.changes = {
        {.time = 1.0, .what = Transport{.time = 7, .since = 1, .isPlaying = true}},
        {.time = 3.0, .what = Performance::Value{"tone", 311.0f}}};
    PerformedSound replayed(sound(900), std::make_shared<const Performance>(performance));
    std::vector<float> heard;
    for (std::int64_t part = 0; part < 64; ++part) { // sixteenths of a second
        std::vector<float> samples(soundRate / 8);
        replayed.samples(static_cast<double>(part) / 16, soundRate, samples);
        heard.insert(heard.end(), samples.begin(), samples.end());
    }
    std::vector<float> exported(static_cast<std::size_t>(2 * soundRate));
    for (const auto& part : {offline(7, 2, 440), offline(9, 1, 311)})
        exported.insert(exported.end(), part.begin(), part.end());
    EXPECT_EQ(heard, exported);

    // While the device's clock is corrected, it is nearly the same.
    std::vector<float> slower(2000);
    replayed.samples(1.5, soundRate / 0.999, slower);
    for (std::size_t at = 0; at < slower.size(); ++at) {
        const auto frame = static_cast<std::size_t>(
            std::lround(static_cast<double>(at / 2) * 0.999 + 1.5 * soundRate));
        ASSERT_NEAR(slower[at], exported[2 * frame + at % 2], 0.05) << at;
    }
}

} // namespace
} // namespace tarnwick::player
