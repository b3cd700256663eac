#include "tests/TarnwickRender/Rendering.h"

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

constexpr std::string_view signature = "float4 shade(float2 uv, constant Uniforms& u, "
                                       "constant Params& p) {\n";

struct StillRendering : Rendering {
    // A picture of `width` by `height`, of the episode whose `shade` has this body.
    std::optional<Picture> shaded(const std::string& body, std::int64_t width = 8,
                                  std::int64_t height = 4, const ParamValues& values = {}) {
        const auto made = program(declarations + std::string(signature) + body + "\n}\n");
        return StillRenderer::render(made, *device, width, height, 2.5f, 75, values);
    }

    std::string declarations;
};

} // namespace

TEST_F(StillRendering, showsTheEpisodeWithItsOriginAtTheLowerLeft) {
    const auto picture = shaded("return float4(uv, 1.0, 0.0);");
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 8u);
    EXPECT_EQ(picture->height, 4u);
    for (std::size_t y = 0; y < 4; ++y)
        for (std::size_t x = 0; x < 8; ++x) {
            const Color found = colorAt(*picture, x, y);
            EXPECT_NEAR(found[0], (static_cast<double>(x) + 0.5) / 8 * 255, 1);
            EXPECT_NEAR(found[1], (3.5 - static_cast<double>(y)) / 4 * 255, 1);
            EXPECT_EQ(found[2], 255);
        }
}

TEST_F(StillRendering, passesTheUniforms) {
    const auto picture = shaded(
        "bool good = all(u.resolution == float2(8, 4)) && u.time == 2.5 && u.timeDelta == 0.0"
        " && all(u.mouse == float2(4, 2)) && u.frame == 75 && u.pad == 0;\n"
        "return good ? float4(0, 1, 0, 1) : float4(1, 0, 0, 1);");
    ASSERT_TRUE(picture);
    EXPECT_EQ(colorAt(*picture, 3, 2), (Color{0, 255, 0}));
}

TEST_F(StillRendering, passesValuesByNameAndDefaultsForTheRest) {
    declarations = "// @param a 0.2 0 1\n// @param b 0.4 0 1\n// @param c 0.6 0 1\n";
    const auto picture =
        shaded("return float4(p.a, p.b, p.c, 1.0);", 1, 1, {{"b", 1.0f}, {"d", 1.0f}});
    ASSERT_TRUE(picture);
    EXPECT_EQ(colorAt(*picture, 0, 0), (Color{51, 255, 153}));
}

TEST_F(StillRendering, givesNothingForASizeThatNoDeviceDraws) {
    for (const auto& [width, height] : {std::pair{0, 4}, {4, 0}, {-1, 4}, {100000, 100000}})
        EXPECT_FALSE(shaded("return float4(1.0);", width, height));
}
