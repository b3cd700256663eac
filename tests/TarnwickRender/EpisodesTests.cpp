// The episodes that come with the project, and the two that a new one begins as.
#include "TarnwickBase/Precondition.h"
#include "TarnwickCore/Episode/ShaderKind.h"
#include "TarnwickCore/Episode/ShaderTemplate.h"
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "TarnwickRender/StillRenderer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

using namespace tarnwick;

namespace {

namespace fs = std::filesystem;

std::optional<Picture> stillOf(const std::string& episode, double time) {
    const auto device = gpu::Device::systemDefault();
    precondition(device != nullptr, "The test skips where there is no device.");
    const auto program =
        ShaderProgram::compile(Episode::of(episode), *device, ShaderProgram::pixelFormat);
    return StillRenderer::render(program, *device, 96, 54, static_cast<float>(time),
                                 static_cast<std::uint32_t>(time * 30), {});
}

// The blue, green and red of all pixels.
std::vector<int> channelsOf(const Picture& picture) {
    std::vector<int> channels;
    for (std::size_t y = 0; y < picture.height; ++y)
        for (std::size_t x = 0; x < picture.width * 4u; ++x)
            if (x % 4 != 3)
                channels.push_back(picture.bytes[y * picture.bytesPerRow + x]);
    return channels;
}

// The stages of walkthroughs among them.
std::vector<fs::path> episodeFiles() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(EPISODES))
        if (entry.path().extension() == ".metal")
            files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

struct ShippedEpisode : testing::TestWithParam<fs::path> {};
struct Template : testing::Test {};

} // namespace

// Processors differ in the last bits of sine and exponential, so a picture of another machine may
// be off by one step of a channel nearly anywhere, and by a few where a line is one pixel wide.
TEST_F(Template, drawsItsPicture) {
    if (!gpu::Device::systemDefault())
        GTEST_SKIP() << "No device to draw with.";
    struct Row {
        std::string text, file;
    };
    for (const Row& row : {Row{ShaderTemplate::newShader("A"), "new-shader.png"},
                           Row{ShaderTemplate::inputsShader("A"), "inputs-shader.png"}}) {
        const auto picture = stillOf(row.text, EpisodeMeta::parse(row.text).still);
        ASSERT_TRUE(picture) << row.file;
        const std::vector<int> drawn = channelsOf(*picture);
        const std::vector<int> wanted = channelsOf(readPNG(fs::path(PICTURES) / row.file));
        ASSERT_EQ(drawn.size(), wanted.size()) << row.file;
        int sum = 0, worst = 0;
        for (std::size_t index = 0; index < drawn.size(); ++index) {
            const int difference = std::abs(drawn[index] - wanted[index]);
            sum += difference;
            worst = std::max(worst, difference);
        }
        EXPECT_LE(worst, 6) << row.file;
        EXPECT_LE(sum, static_cast<int>(drawn.size() / 4)) << row.file;
    }
}

TEST_P(ShippedEpisode, drawsAPictureThatIsNeitherDarkNorFlat) {
    if (!gpu::Device::systemDefault())
        GTEST_SKIP() << "No device to draw with.";
    const std::string text = fileText(GetParam()).value();
    // A million particles take a third of a second a step without a GPU.
    const double still = EpisodeMeta::parse(text).still;
    const bool steps = shaderKindOf(text) == ShaderKind::particles;
    const auto picture = stillOf(text, steps ? std::min(still, 0.2) : still);
    ASSERT_TRUE(picture);
    const std::vector<int> channels = channelsOf(*picture);
    double sum = 0, squares = 0;
    for (const int channel : channels) {
        sum += channel;
        squares += channel * channel;
    }
    const double mean = sum / static_cast<double>(channels.size());
    const double spread = std::sqrt(squares / static_cast<double>(channels.size()) - mean * mean);
    EXPECT_GT(mean, 5);
    EXPECT_LT(mean, 230);
    EXPECT_GT(spread, 8);
}

INSTANTIATE_TEST_SUITE_P(
    Folder, ShippedEpisode, testing::ValuesIn(episodeFiles()), [](const auto& given) {
        std::string name = fs::relative(given.param, EPISODES).replace_extension().string();
        std::ranges::replace_if(
            name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
        return name;
    });
