#include "TarnwickRender/AudioRenderer.h"
#include "player/Sound/EpisodeSound.h"
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
        return std::make_shared<EpisodeSound>(sounding, device, ParamValues{{"tone", hertz}});
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

} // namespace
} // namespace tarnwick::player
