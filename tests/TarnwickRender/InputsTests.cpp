#include "TarnwickRender/FeedbackFrames.h"
#include "TarnwickRender/Sound/SpectrumTexture.h"
#include "tests/TarnwickRender/Rendering.h"

#include <numeric>
#include <vector>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

using Inputs = Rendering;

std::vector<float> bins(const SpectrumTexture& spectrum) {
    std::vector<float> found(spectrum.texture().width());
    spectrum.texture().getBytes(found.data(), found.size() * sizeof(float),
                                {.width = spectrum.texture().width(), .height = 1}, 0);
    return found;
}

// Blue, the only channel that the tests of frames look at.
int blueOf(const gpu::Texture& texture) {
    std::array<std::uint8_t, 4> pixel{};
    texture.getBytes(pixel.data(), 4, {.width = 1, .height = 1}, 0);
    return pixel[0];
}

void fill(gpu::CommandBuffer& commands, const gpu::Texture& texture, double blue) {
    commands
        .renderCommandEncoder({.color = {.texture = &texture,
                                         .load = gpu::LoadAction::clear,
                                         .clear = {.blue = blue}}})
        ->endEncoding();
}

} // namespace

TEST_F(Inputs, holdAsManyBinsAsTheSpectrumHas) {
    EXPECT_FALSE(SpectrumTexture::make(*device, 0));
    const auto spectrum = SpectrumTexture::make(*device, 4);
    ASSERT_TRUE(spectrum);
    std::vector<float> values(6);
    std::iota(values.begin(), values.end(), 1.0f);
    spectrum->update(values);
    EXPECT_EQ(bins(*spectrum), (std::vector<float>{1, 2, 3, 4}));
    spectrum->update(std::vector<float>{9, 8});
    spectrum->update({});
    EXPECT_EQ(bins(*spectrum), (std::vector<float>{9, 8, 3, 4}));
}

TEST_F(Inputs, giveTheEpisodeTheFrameBefore) {
    EXPECT_FALSE(FeedbackFrames::make(*device, 0, 4, ShaderProgram::pixelFormat));
    const auto frames = FeedbackFrames::make(*device, 8, 4, ShaderProgram::pixelFormat);
    const auto wide = target(16, 2), fresh = target(8, 4);
    ASSERT_TRUE(frames && wide && fresh);
    EXPECT_EQ(frames->previous(), nullptr);
    EXPECT_FALSE(frames->hasPrevious());
    EXPECT_EQ(frames->index(), 0);
    EXPECT_EQ(std::pair(frames->width(), frames->height()), std::pair(8l, 4l));
    const gpu::Texture* drawn = &frames->current();
    perform([&](auto& commands) {
        frames->copyPrevious(*fresh, commands); // there is none
        fill(commands, frames->current(), 0.2);
        frames->advance();
        fill(commands, frames->current(), 0.4);
        frames->copy(*wide, commands);
    });
    EXPECT_EQ(frames->previous(), drawn);
    EXPECT_EQ(frames->index(), 1);
    EXPECT_EQ(blueOf(*fresh), 0);
    const Picture copied = pictureOf(*wide);
    EXPECT_EQ(colorAt(copied, 7, 1)[2], 102); // what both have in common
    EXPECT_EQ(colorAt(copied, 8, 1)[2], 0);
    perform([&](auto& commands) { frames->copyPrevious(*fresh, commands); });
    EXPECT_EQ(blueOf(*fresh), 51);
    frames->reset();
    EXPECT_EQ(frames->previous(), nullptr);
    EXPECT_NE(&frames->current(), drawn);
}

TEST_F(Inputs, areSilentAndBlackInAStill) {
    const Picture picture =
        still("float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n"
              "    float sum = dot(in.audio, 1.0) + in.band(uv.x) + length(in.previous(uv))\n"
              "        + length(in.channel(0, uv)) + length(in.channel(3, uv));\n"
              "    return float4(sum, sum == 0.0, u.time, 1.0);\n}\n",
              4, 4, 1);
    EXPECT_EQ(colorAt(picture, 2, 2), (Color{0, 255, 255}));
}

// A frame that adds to the one before: what goes round comes round.
TEST_F(Inputs, feedAnEpisodeItsOwnPicture) {
    const auto made =
        program("float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n"
                "    return in.previous(uv) + float4(in.band(0.9), in.audio.y, 0.0, 0.0);\n}\n");
    const auto frames = FeedbackFrames::make(*device, 4, 4, ShaderProgram::pixelFormat);
    const auto spectrum = SpectrumTexture::make(*device, ShaderAssembler::spectrumBins);
    ASSERT_TRUE(frames && spectrum);
    spectrum->update(std::vector<float>(256, 20.0f / 255));
    const auto drawn = ProgramFrames::make(made, *device, 4, 4);
    const auto shown = target(4, 4);
    perform([&](auto& commands) {
        for (int count = 0; count < 3; ++count, frames->advance()) {
            const ShaderInputs inputs{.audio = {0, 10.0f / 255, 0, 0},
                                      .spectrum = &spectrum->texture(),
                                      .previous = frames->previous()};
            drawn->encode(commands, {.values = {}, .inputs = inputs},
                          {.descriptor = {.color = {.texture = &frames->current(),
                                                    .load = gpu::LoadAction::clear}}});
        }
        frames->copyPrevious(*shown, commands);
    });
    EXPECT_EQ(colorAt(pictureOf(*shown), 2, 2), (Color{60, 30, 0}));
}
