#include "TarnwickRender/LoopFinder.h"
#include "TarnwickRender/Pictures/LoopBlend.h"
#include "tests/TarnwickRender/Rendering.h"

#include <cmath>
#include <limits>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

class Loop : public Rendering {
  protected:
    std::shared_ptr<const ShaderProgram> shading(const std::string& color) {
        return program("// @param period 2 0.1 10\nfloat4 shade(float2 uv, " +
                       std::string(arguments) + ") {\n    return " + color + ";\n}\n");
    }

    // The search as it reads, with a renderer made anew for each still.
    std::optional<double> plainly(const std::shared_ptr<const ShaderProgram>& program, double start,
                                  double around, double range, std::int64_t fps) {
        auto still = [&](double time) {
            return StillRenderer::render(program, *device, 96, 54, static_cast<float>(time), 0, {})
                ->bytes;
        };
        auto distance = [](const auto& one, const auto& other) {
            double sum = 0;
            for (std::size_t at = 0; at < one.size(); ++at)
                sum += std::pow(one[at] - other[at], 2);
            return sum;
        };
        const double step = 1 / static_cast<double>(fps);
        const auto first = still(start), second = still(start + step);
        double best = 0, bestScore = std::numeric_limits<double>::infinity();
        for (double length = step * std::round(std::max(2 * step, around - range) / step);
             length <= around + range + 1e-9; length += step) {
            const double score = distance(first, still(start + length)) +
                                 distance(second, still(start + length + step));
            if (score < bestScore) {
                bestScore = score;
                best = length;
            }
        }
        return std::round(best * static_cast<double>(fps)) / static_cast<double>(fps);
    }
};

const std::string turning = "float4(0.5 + 0.5 * cos(6.2831853 * (u.time / p.period + uv.x)))";
const std::string noisy = "float4(fract(sin(dot(uv, float2(12.9, 78.2)) + floor(u.time * 24.0)) * "
                          "43758.5))";

} // namespace

TEST_F(Loop, isFoundAtThePeriodAndAtTheFirstOfEqualOnes) {
    const auto program = shading(turning);
    EXPECT_EQ(LoopFinder::bestLength(program, *device, {}, 0, 2, 0.5, 30), 2.0);
    EXPECT_EQ(LoopFinder::bestLength(program, *device, {}, 0.3, 3, 2, 10), 2.0);
    EXPECT_EQ(LoopFinder::bestLength(program, *device, {{"period", 1.5f}}, 0, 2, 0.6, 10), 1.5);
    // A motion that goes there and back meets each picture twice, once the wrong way.
    const auto swinging = shading("float4(0.5 + 0.5 * sin(3.14159265 * u.time))");
    EXPECT_EQ(LoopFinder::bestLength(swinging, *device, {}, 0.2, 1.5, 1, 20), 2.0);
}

TEST_F(Loop, isFoundWithTheValuesOfEachTime) {
    const auto program = shading("float4(p.period)");
    Settings upAndDown; // twice in a second
    for (int key = 0; key < 8; ++key)
        upAndDown.keys.set("period", 0.25 * key, key % 2 == 0 ? 1.0f : 0.0f,
                           KeyframeTracks::Ease::linear);
    // On the way up and down each value is met twice.
    const auto found = LoopFinder::best(program, *device, upAndDown, 0.1, 0.4, 0.2, 20);
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, (FoundLoop{.length = 0.5, .difference = 0}));
}

TEST_F(Loop, isTheOneThatStillsMadeOneByOneGive) {
    for (const std::string& color : {turning, noisy})
        for (const double start : {0.0, 1234.567})
            EXPECT_EQ(LoopFinder::bestLength(shading(color), *device, {}, start, 1.77, 0.4, 24),
                      plainly(shading(color), start, 1.77, 0.4, 24));
}

TEST_F(Loop, isSoughtFromTwoFramesOnAndInTheRangeAlone) {
    const auto still = shading("float4(0.25)"); // every length loops
    EXPECT_EQ(LoopFinder::bestLength(still, *device, {}, 0, 0.1, 5, 10), 0.2);
    EXPECT_EQ(LoopFinder::bestLength(still, *device, {}, 0, 0.5, 0, 10), 0.5);
    EXPECT_EQ(LoopFinder::best(still, *device, Timeline(), 0, 0.5, 0, 10)->difference, 0);
    EXPECT_FALSE(LoopFinder::bestLength(still, *device, {}, 0, 0.05, 0, 10)); // none fits
    EXPECT_FALSE(LoopFinder::bestLength(still, *device, {}, 0, 2, -1, 10));
    for (const double number : {HUGE_VAL, -HUGE_VAL, std::nan(""), 1e300}) {
        EXPECT_FALSE(LoopFinder::bestLength(still, *device, {}, 0, number, 1, 10)) << number;
        EXPECT_FALSE(LoopFinder::bestLength(still, *device, {}, 0, 1, number, 10)) << number;
    }
    EXPECT_FALSE(LoopFinder::bestLength(still, *device, {}, 0, 1, 1, 0));
}

TEST_F(Loop, isNotGivenForWhatKeepsStateNorWhenStopped) {
    EXPECT_FALSE(
        LoopFinder::bestLength(program(ParticleEpisode{}.text()), *device, {}, 0, 2, 1, 4));
    std::int64_t tried = 0;
    EXPECT_FALSE(LoopFinder::bestLength(shading(turning), *device, {}, 0, 2, 1, 4,
                                        [&](std::int64_t done, std::int64_t total) {
                                            EXPECT_EQ(total, 9);
                                            tried = done;
                                            return done < 3;
                                        }));
    EXPECT_EQ(tried, 3);
}

TEST_F(Loop, mixesTwoFramesByTheirWeightAlphaIncluded) {
    auto filled = [&](std::array<std::uint8_t, 4> pixel) {
        auto texture = device->newTexture({.width = 1, .height = 1});
        texture->replace({.width = 1, .height = 1}, 0, pixel.data(), 4);
        return texture;
    };
    const auto from = filled({200, 0, 40, 0}), to = filled({0, 100, 40, 200});
    const auto mixed = target(1, 1);
    const LoopBlend blend(*device, ShaderProgram::pixelFormat);
    auto pixel = [&](float weight) {
        perform([&](gpu::CommandBuffer& commands) {
            auto encoder = commands.renderCommandEncoder({.color = {.texture = mixed.get()}});
            blend.draw(*encoder, *from, *to, weight);
            encoder->endEncoding();
        });
        return pictureOf(*mixed).bytes;
    };
    using Bytes = std::vector<std::uint8_t>;
    EXPECT_EQ(pixel(0.25f), (Bytes{50, 75, 40, 150}));
    EXPECT_EQ(pixel(1), (Bytes{200, 0, 40, 0}));
    EXPECT_EQ(pixel(0), (Bytes{0, 100, 40, 200}));
}
