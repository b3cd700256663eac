#include "TarnwickRender/AudioRenderer.h"
#include "TarnwickRender/SoundTap.h"
#include "tests/TarnwickRender/Rendering.h"

#include <cmath>
#include <numbers>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

class Sound : public Rendering {
  protected:
    static std::string episode(const std::string& body) {
        return "// @param tone 440 0 1000 Hertz\n"
               "float2 sound(float t, constant Params& p) {\n" +
               body +
               "\n}\nfloat4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
               "    return float4(1.0);\n}\n";
    }
    std::shared_ptr<const ShaderProgram> sounding(const std::string& body) {
        return program(episode(body));
    }
    std::vector<float> rendered(const std::string& body, double start, double duration,
                                const ParamValues& values = {}) {
        const auto samples =
            AudioRenderer::render(sounding(body), *device, start, duration, values);
        EXPECT_TRUE(samples);
        return samples.value_or(std::vector<float>{});
    }
};

const std::string sine = "return float2(sin(6.28318530718 * p.tone * t), 0.5);";

std::vector<float> textureBins(const SpectrumTexture& spectrum) {
    std::vector<float> bins(256);
    spectrum.texture().getBytes(bins.data(), 1024, {.width = 256, .height = 1}, 0);
    return bins;
}

std::uint32_t numberAt(const std::vector<std::uint8_t>& bytes, std::size_t at, int width) {
    std::uint32_t number = 0;
    for (int byte = width - 1; byte >= 0; --byte)
        number = number << 8 | bytes.at(at + static_cast<std::size_t>(byte));
    return number;
}

} // namespace

TEST_F(Sound, isItsFunctionOverTime) {
    const auto samples = rendered(sine, 0.25, 2.5, {{"tone", 110}});
    ASSERT_EQ(samples.size(), 240000u);
    for (std::size_t n = 0; n < 120000; n += 7) {
        const double t = 0.25 + static_cast<double>(n) / 48000;
        ASSERT_NEAR(samples[2 * n], std::sin(2 * std::numbers::pi * 110 * t), 1e-3) << n;
        ASSERT_EQ(samples[2 * n + 1], 0.5f);
    }
    EXPECT_TRUE(rendered(sine, 1, 0).empty());
    EXPECT_TRUE(rendered(sine, 1, -1).empty());
    EXPECT_EQ(rendered(sine, 1, 1.6 / 48000).size(), 4u);
    EXPECT_DEATH(AudioRenderer::render(sounding(sine), *device, 0, NAN, {}), "can be counted");
}

// Where one job ends and the next begins nothing is heard.
TEST_F(Sound, goesOnOverTheBordersOfJobs) {
    const auto whole = rendered(sine, 0, 3), across = rendered(sine, 0.5, 1);
    for (std::size_t n = 0; n < 48000; ++n)
        ASSERT_NEAR(across[2 * n], whole[2 * (n + 24000)], 1e-3) << n;
    const auto saw = rendered("return fract(t);", 0, 3);
    for (std::size_t n = 1; n < 144000; ++n)
        ASSERT_NEAR(saw[2 * n], std::fmod(static_cast<double>(n) / 48000, 1.0), 3e-7) << n;
}

TEST_F(Sound, staysWithinFullScale) {
    for (const auto& [body, expected] :
         std::vector<std::pair<std::string, float>>{{"return float2(9.0, 9.0);", 1.0f},
                                                    {"return float2(-1e38 * 1e10);", -1.0f},
                                                    {"return float2(1.0 / (t - t));", 1.0f}}) {
        const auto samples = rendered(body, 0, 0.01);
        EXPECT_EQ(samples, std::vector<float>(960, expected)) << body;
    }
    const std::string noNumber = "return float2(sqrt(-1.0 - t));";
    for (const float sample : rendered(noNumber, 0, 0.01))
        EXPECT_TRUE(sample >= -1 && sample <= 1) << sample;
    const auto tap = SoundTap::make(sounding(noNumber), *device);
    for (const float level : tap->inputs(1, {}).audio)
        EXPECT_TRUE(level >= 0 && level <= 1) << level;
}

// `-t` is below 0 where t is above it, and -0, whose root is a number, at time 0.
TEST_F(Sound, isCheckedFromTimeZeroOn) {
    auto first = [this](const std::string& body, double start, std::uint32_t count) {
        const auto check = SoundCheck::make(ShaderAssembler::assemble(episode(body)), *device);
        return check->firstNotFinite(start, count, {{"tone", 2}});
    };
    EXPECT_EQ(first("return float2(sqrt(t), 1e38);", -0.5, 48000), std::nullopt);
    EXPECT_EQ(first("return float2(0.0, sqrt(-t));", -0.5, 24001), std::nullopt);
    EXPECT_NEAR(first("return float2(0.0, sqrt(-t));", -0.5, 24002).value_or(9), 1 / 48e3, 1e-9);
    EXPECT_NEAR(first("return float2(sqrt(p.tone - t));", 1.5, 48000).value_or(9), 2 + 1 / 48e3,
                1e-9);
}

TEST_F(Sound, isAbsentWithoutItsFunction) {
    const auto silent = program("float4 shade(float2 uv, constant Uniforms& u, constant Params& p)"
                                " { return float4(1.0); }\n");
    EXPECT_FALSE(AudioRenderer::render(silent, *device, 0, 1, {}));
    EXPECT_FALSE(SoundTap::make(silent, *device));
}

TEST_F(Sound, isHeardAsItEndsAtTheFrame) {
    const auto tap = SoundTap::make(sounding(sine), *device);
    ASSERT_TRUE(tap);
    EXPECT_EQ(tap->inputs(0, {}).audio, (std::array<float, 4>{})); // none before time 0
    const ShaderInputs heard = tap->inputs(5, {{"tone", 1000}});
    // The same samples, looked at by another analyzer.
    AudioAnalyzer analyzer(48000, 256);
    analyzer.analyse(
        AudioAnalyzer::mono(rendered(sine, 5 - 2048 / 48000.0, 2048 / 48000.0, {{"tone", 1000}})),
        5);
    for (std::size_t band = 0; band < 4; ++band)
        EXPECT_NEAR(heard.audio[band], analyzer.bands()[band], 1e-3) << band;
    EXPECT_GT(heard.audio[1], 0.8f);
    EXPECT_EQ(heard.spectrum, &tap->spectrum().texture());
    EXPECT_EQ(textureBins(tap->spectrum()), tap->analyzer().spectrum());
    EXPECT_TRUE(heard.channels.empty() && heard.previous == nullptr);
}

// A job that was prepared before a frame is committed is not behind it, whatever the device's
// queues.
TEST_F(Sound, isHeardWhileAFrameIsInFlight) {
    const auto loud = sounding(sine);
    const auto tap = SoundTap::make(loud, *device), other = SoundTap::make(loud, *device);
    ASSERT_TRUE(tap && other);
    const ParamValues values{{"tone", 500}};
    for (const double time : {4.0, 4.1, 4.2, 4.3, 4.4}) {
        tap->prepare(time, values);
        other->prepare(time + 1, values); // and not taken
        EXPECT_EQ(tap->inputs(time, values).audio, other->inputs(time, values).audio);
        EXPECT_EQ(textureBins(tap->spectrum()), textureBins(other->spectrum()));
    }
    const auto heavy =
        program("float4 shade(float2 uv, constant Uniforms& u, constant Params& p)"
                " { float x = uv.x; for (int i = 0; x > -1.0; i++) x = fract(x * 1.37 + 0.1);"
                " return float4(x); }\n"); // 60,000 rounds at each pixel of 128 x 128: a second
    const auto target = device->newTexture({.format = ShaderProgram::pixelFormat,
                                            .width = 128,
                                            .height = 128,
                                            .usage = {.renderTarget = true}});
    const auto queue = device->newCommandQueue();
    auto frame = queue->commandBuffer();
    auto encoder = frame->renderCommandEncoder({.color = {.texture = target.get()}});
    heavy->draw(*encoder, {.resolution = {128, 128}}, {});
    encoder->endEncoding();
    tap->prepare(5, values);
    frame->commit();
    EXPECT_NE(tap->inputs(5, values).spectrum, nullptr);
    EXPECT_EQ(frame->status(), gpu::CommandBufferStatus::committed);
    frame->waitUntilCompleted();
}

TEST_F(Sound, isSilentBeforeItsStartAndAfterAJumpBack) {
    const auto constant = sounding("return float2(0.5);");
    const auto tap = SoundTap::make(constant, *device);
    tap->inputs(0.02, {}); // the first 1088 samples of the window are before the start
    std::vector<float> window(2048, 0.5f);
    std::fill_n(window.begin(), 1088, 0.0f);
    AudioAnalyzer analyzer(48000, 256);
    analyzer.analyse(window, 1.0 / 60);
    EXPECT_EQ(tap->analyzer().bands(), analyzer.bands());
    EXPECT_EQ(tap->analyzer().spectrum(), analyzer.spectrum());
    tap->inputs(5, {});
    EXPECT_GT(tap->analyzer().bands()[3], 0);
    EXPECT_EQ(tap->inputs(4, {}).audio, (std::array<float, 4>{}));
    EXPECT_EQ(textureBins(tap->spectrum()), std::vector<float>(256));
    EXPECT_GT(tap->inputs(4.1, {}).audio[3], 0);
}

TEST(SoundFile, isRIFFWithSixteenBits) {
    const auto bytes =
        AudioRenderer::wavData(std::vector<float>{0.5f, -0.5f, 2, -2, 1, -1, 0, NAN});
    ASSERT_EQ(bytes.size(), 60u);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 44),
              std::string("RIFF\x34\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0\x80\xbb\0\0\0\xee\x02\0"
                          "\x04\0\x10\0data\x10\0\0\0",
                          44));
    const std::vector<int> numbers{16384, -16384, 32767, -32767, 32767, -32767, 0, 0};
    for (std::size_t at = 0; at < numbers.size(); ++at)
        EXPECT_EQ(static_cast<std::int16_t>(numberAt(bytes, 44 + 2 * at, 2)), numbers[at]);
    const auto empty = AudioRenderer::wavData({});
    ASSERT_EQ(empty.size(), 44u);
    EXPECT_EQ(numberAt(empty, 4, 4), 36u);
    EXPECT_EQ(numberAt(empty, 40, 4), 0u);
}
