// The episodes that hear, played with sound, a picture and their own last frames; and the ones that
// sound.
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "TarnwickRender/AudioRenderer.h"
#include "TarnwickRender/FeedbackFrames.h"
#include "TarnwickRender/Sound/SpectrumTexture.h"
#include "TarnwickRender/SoundTap.h"
#include "tests/TarnwickRender/EpisodeFiles.h"
#include "tests/TarnwickRender/Rendering.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <vector>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

constexpr std::uint32_t width = 96, height = 54;

struct HearingEpisode : Rendering {
    // One frame at `time` seconds, without any before it.
    Picture drawn(const std::shared_ptr<const ShaderProgram>& program, double time,
                  const ShaderInputs& inputs) {
        const auto frames = ProgramFrames::make(program, *device, width, height);
        return frame(*frames, static_cast<float>(time), 0, inputs);
    }

    // The last of `frames` frames, each reading the one before, at `loudness` from 0 to 1.
    Picture played(const std::shared_ptr<const ShaderProgram>& program, int frames,
                   float loudness) {
        const auto spectrum = SpectrumTexture::make(*device, ShaderAssembler::spectrumBins);
        spectrum->update(std::vector<float>(ShaderAssembler::spectrumBins, loudness));
        const auto shownBy = ProgramFrames::make(program, *device, width, height);
        const auto feedback = FeedbackFrames::make(*device, width, height, program->pixelFormat);
        const auto shown = target(width, height);
        for (int frame = 0; frame < frames; ++frame) {
            const ShaderInputs inputs{.audio = {loudness, loudness, loudness, loudness},
                                      .spectrum = &spectrum->texture(),
                                      .previous = feedback->previous()};
            perform([&](gpu::CommandBuffer& commands) {
                shownBy->encode(commands,
                                {.moment = {.time = 20 + static_cast<float>(frame) / 30,
                                            .timeDelta = 1.0f / 30,
                                            .frame = static_cast<std::uint32_t>(frame)},
                                 .values = {},
                                 .inputs = inputs},
                                {.descriptor = {.color = {.texture = &feedback->current(),
                                                          .load = gpu::LoadAction::clear}}});
                feedback->copy(*shown, commands);
            });
            feedback->advance();
        }
        return pictureOf(*shown);
    }
};

double meanOf(const Picture& picture) {
    // Alpha is 255 everywhere and counts as little as any other channel.
    return std::accumulate(picture.bytes.begin(), picture.bytes.end(), 0.0) /
           static_cast<double>(picture.bytes.size());
}

} // namespace

TEST_F(HearingEpisode, showsSoundAndNeverGrowsWhiteFromItsOwnFrames) {
    int heard = 0;
    for (const auto& path : episodeFiles()) {
        const std::string text = fileText(path).value();
        if (!ShaderAssembler::usesInputs(text))
            continue;
        ++heard;
        const auto episode = program(text);
        const Picture silent = played(episode, 1, 0), loud = played(episode, 1, 0.7f);
        EXPECT_GT(std::abs(meanOf(loud) - meanOf(silent)), 0.5) << path;
        // What a frame takes from the one before settles.
        const double after = meanOf(played(episode, 30, 0.7f));
        EXPECT_NEAR(meanOf(played(episode, 60, 0.7f)), after, 8) << path;
        EXPECT_LT(after, 200) << path;
    }
    EXPECT_GE(heard, 2);
}

// A frame just before a beat is told from the same frame just after it by what the tap hears only.
TEST_F(HearingEpisode, drawsTheSoundThatItMakes) {
    const auto text = fileText(std::filesystem::path(EPISODES) / "long-play.metal").value();
    const auto episode = program(text);
    const auto tap = SoundTap::make(episode, *device);
    ASSERT_TRUE(tap);
    constexpr double beat = 1.8; // seconds from one low note to the next
    const auto brightnessAt = [&](double time) {
        return meanOf(drawn(episode, 9, tap->inputs(time, {})));
    };
    const double silent = meanOf(drawn(episode, 9, ShaderInputs::none()));
    brightnessAt(5 * beat - 0.5);
    const double before = brightnessAt(5 * beat - 0.01), after = brightnessAt(5 * beat + 0.1);
    EXPECT_GT(before, silent);
    EXPECT_GT(after, before + 0.3);
}

TEST_F(Rendering, soundsOfEpisodesAreHeardAndNeverClipped) {
    int sounding = 0;
    for (const auto& path : episodeFiles()) {
        const std::string text = fileText(path).value();
        if (!ShaderAssembler::definesSound(text))
            continue;
        ++sounding;
        const auto samples = AudioRenderer::render(program(text), *device, 0, 30, {});
        ASSERT_TRUE(samples);
        double squares = 0, sum = 0, peak = 0;
        for (const double sample : *samples) {
            squares += sample * sample;
            sum += sample;
            peak = std::max(peak, std::abs(sample));
        }
        const double count = static_cast<double>(samples->size());
        EXPECT_LT(peak, 0.9) << path;
        EXPECT_GT(std::sqrt(squares / count), 0.01) << path;
        EXPECT_LT(std::abs(sum / count), 0.01) << path;
    }
    EXPECT_GE(sounding, 3);
}
