// What a decoder makes of the movies that are exported.
#include "TarnwickRender/VideoExporter.h"
#include "tests/TarnwickPlatform/Movie/SmallMovie.h"
#include "tests/TarnwickRender/Rendering.h"

#include <cmath>
#include <fstream>
#include <iterator>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

constexpr std::size_t pixels = 160 * 90;

class Movie : public Rendering {
  protected:
    std::shared_ptr<const ShaderProgram> episode(const std::string& name) {
        std::ifstream file(EPISODES "/" + name + ".metal");
        return program({std::istreambuf_iterator<char>(file), {}});
    }
    std::vector<DecodedPicture> decoded(const std::shared_ptr<const ShaderProgram>& program,
                                        const ExportPlan& plan) {
        const TemporaryFolder folder;
        const auto file = folder.path() / "movie.mov";
        VideoExporter::export_(program, *device, plan, {}, false, file,
                               [](std::int64_t, std::int64_t) { return true; });
        return decodedPictures(file);
    }
};

ExportPreset resized(ExportPreset preset, std::int64_t width, std::int64_t height) {
    preset.width = width;
    preset.height = height;
    return preset;
}

// Y', Cb, Cr and alpha of a pixel as Rec. ITU-R BT.709 has them in 10 bits, video range,
// unrounded.
std::array<double, 4> tenBits(const std::uint8_t* bgra) {
    const double blue = bgra[0] / 255.0, green = bgra[1] / 255.0, red = bgra[2] / 255.0;
    const double luma = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    return {64 + 876 * luma, 512 + 896 * (blue - luma) / 1.8556, 512 + 896 * (red - luma) / 1.5748,
            bgra[3] / 255.0 * 1023};
}

} // namespace

// ProRes rounds what it keeps of 8 by 8 pixels to multiples of 4: nothing is lost where they are
// smooth, and along edges a few samples are off by more than one.
TEST_F(Movie, inProRes4444IsTheStillOfTheSameTime) {
    const auto smooth = program("float4 shade(float2 uv, " + std::string(arguments) +
                                ") { return float4(uv, fract(u.time), 0.25 + 0.5 * uv.x); }\n");
    for (const auto& [made, within] : {std::pair{smooth, 1.0}, {episode("ember-silk"), 0.99}}) {
        const ExportPlan plan(resized(ExportPreset::prores4444, 160, 90), 3.5, 0.05);
        const auto pictures = decoded(made, plan);
        ASSERT_EQ(pictures.size(), 3u);
        const auto still = StillRenderer::render(made, *device, 160, 90, plan.time(2), 0, {});
        std::array<std::size_t, 4> near{};
        double most = 0;
        for (std::size_t at = 0; at < pixels; ++at) {
            const auto wanted = tenBits(&still->bytes[4 * at]);
            for (std::size_t plane = 0; plane < 4; ++plane) {
                // The decoder gives 12 bits.
                const double met = std::round(pictures[2].planes.at(plane).at(at) / 4.0);
                const double off = std::abs(met - std::round(wanted[plane]));
                near[plane] += off <= 1;
                most = std::max(most, off);
            }
        }
        for (const std::size_t count : near)
            EXPECT_GE(static_cast<double>(count), within * pixels);
        EXPECT_LE(most, within == 1 ? 1 : 3);
    }
}

// The codec knows nothing beyond the ends of what it is given, and guesses wrongly there.
TEST_F(Movie, ofALoopGoesOnInItsSoundWhereItBegins) {
    ExportSegment loop{.program = program("float2 sound(float t, constant Params& p) {"
                                          " return 0.7 * sin(t * 1381.0); }\n"
                                          "float4 shade(float2 uv, " +
                                          std::string(arguments) + ") { return 1.0; }\n"),
                       .start = 1,
                       .duration = 0.9,
                       .sound = true,
                       .loop = 0.4,
                       .loopSound = true};
    const TemporaryFolder folder;
    const auto file = folder.path() / "loop.mp4";
    VideoExporter::export_(std::span(&loop, 1), resized(ExportPreset::site, 64, 36), *device, file,
                           [](std::int64_t, std::int64_t) { return true; });
    std::vector<float> samples = decodedSound(file);
    ASSERT_GE(samples.size(), 43'200U);
    samples.resize(43'200); // decoders give the last packet's filling, too
    const auto sample = [&](std::size_t at) { return samples[at % samples.size()]; };
    const float most = 0.7F * 1381 / 48'000;
    for (std::size_t at = 43'100; at < 43'300; ++at)
        ASSERT_LT(std::abs(sample(at + 1) - sample(at)), 1.2F * most) << at;
    EXPECT_NEAR(samples.front(), 0.7F * std::sin(1381.0F), 0.01);
}

// The web preset's bits a pixel, on small pictures, which have more in each.
TEST_F(Movie, ofAQuietEpisodeKeepsFortyDecibelsAtTheWebPresetsRate) {
    ExportPreset web = resized(ExportPreset::web, 480, 270);
    web = web.withBitrate(web.bitrate / 16);
    const auto program = episode("ember-silk");
    const ExportPlan plan(web, 2, 1);
    const auto pictures = decoded(program, plan);
    ASSERT_EQ(pictures.size(), 60u);
    double squares = 0, count = 0;
    for (std::size_t frame = 0; frame < 60; frame += 6) {
        const auto still = StillRenderer::render(
            program, *device, 480, 270, plan.time(static_cast<std::int64_t>(frame)), 0, {});
        for (std::size_t at = 0; at < std::size_t{480} * 270; ++at, ++count)
            squares +=
                std::pow(pictures[frame].planes[0][at] - tenBits(&still->bytes[4 * at])[0] / 4, 2);
    }
    EXPECT_GE(10 * std::log10(255 * 255 * count / squares), 40);
}
