#include "TarnwickRender/StillRenderer.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

constexpr std::string_view signature = "float4 shade(float2 uv, constant Uniforms& u, "
                                       "constant Params& p) {\n";

struct StillRendering : testing::Test {
    std::shared_ptr<gpu::Device> device = gpu::Device::systemDefault();

    void SetUp() override {
        if (!device)
            GTEST_SKIP() << "No device to draw with.";
    }

    // A picture of `width` by `height`, of the episode whose `shade` has this body.
    std::optional<Picture> still(const std::string& body, std::int64_t width = 8,
                                 std::int64_t height = 4, const ParamValues& values = {}) {
        const auto program = ShaderProgram::compile(
            Episode::of(declarations + std::string(signature) + body + "\n}\n"), *device,
            ShaderProgram::pixelFormat);
        return StillRenderer::render(program, *device, width, height, 2.5f, 75, values);
    }

    // Blue, green, red of the pixel from the upper left.
    static std::array<int, 3> pixel(const Picture& picture, std::size_t x, std::size_t y) {
        const std::uint8_t* at = &picture.bytes[y * picture.bytesPerRow + x * 4];
        return {at[0], at[1], at[2]};
    }

    std::string declarations;
};

using Pixel = std::array<int, 3>;

} // namespace

TEST_F(StillRendering, showsTheEpisodeWithItsOriginAtTheLowerLeft) {
    const auto picture = still("return float4(uv, 1.0, 0.0);");
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 8u);
    EXPECT_EQ(picture->height, 4u);
    for (std::size_t y = 0; y < 4; ++y)
        for (std::size_t x = 0; x < 8; ++x) {
            const Pixel found = pixel(*picture, x, y);
            EXPECT_EQ(found[0], 255);
            EXPECT_NEAR(found[1], (3.5 - static_cast<double>(y)) / 4 * 255, 1);
            EXPECT_NEAR(found[2], (static_cast<double>(x) + 0.5) / 8 * 255, 1);
        }
}

TEST_F(StillRendering, passesTheUniforms) {
    const auto picture =
        still("bool good = all(u.resolution == float2(8, 4)) && u.time == 2.5 && u.timeDelta == 0.0"
              " && all(u.mouse == float2(4, 2)) && u.frame == 75 && u.pad == 0;\n"
              "return good ? float4(0, 1, 0, 1) : float4(1, 0, 0, 1);");
    ASSERT_TRUE(picture);
    EXPECT_EQ(pixel(*picture, 3, 2), (Pixel{0, 255, 0}));
}

TEST_F(StillRendering, passesValuesByNameAndDefaultsForTheRest) {
    declarations = "// @param a 0.2 0 1\n// @param b 0.4 0 1\n// @param c 0.6 0 1\n";
    const auto picture =
        still("return float4(p.a, p.b, p.c, 1.0);", 1, 1, {{"b", 1.0f}, {"d", 1.0f}});
    ASSERT_TRUE(picture);
    EXPECT_EQ(pixel(*picture, 0, 0), (Pixel{153, 255, 51}));
}

TEST_F(StillRendering, givesNothingForASizeThatNoDeviceDraws) {
    for (const auto& [width, height] : {std::pair{0, 4}, {4, 0}, {-1, 4}, {100000, 100000}})
        EXPECT_FALSE(still("return float4(1.0);", width, height));
}

TEST_F(StillRendering, givesTheSamePictureEachTime) {
    const std::string body = "return float4(fract(sin(dot(uv, float2(12.9, 78.2))) * 43758.5));";
    EXPECT_EQ(still(body, 64, 64), still(body, 64, 64));
}
