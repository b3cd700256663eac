// Points against squares worked out on the CPU, by every way that the layer has to draw them.
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Device/DeviceState.h"
#include "tests/TarnwickGPU/Gpu.h"
#include "tests/TarnwickGPU/HeapCount.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <numeric>
#include <random>

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr std::uint32_t width = 128, height = 64; // powers of two: positions are exact

// Each pixel counts the points over it, and adds up their coordinates and their numbers.
const char* const program = R"msl(
#include <metal_stdlib>
using namespace metal;
struct Dot { float4 position; float size; float weight; };
struct Out { float4 position [[position]]; float size [[point_size]]; uint id [[flat]]; };
vertex Out dot_vertex(uint id [[vertex_id]], const device Dot* dots [[buffer(0)]]) {
    Out out;
    out.position = dots[id].position;
    out.size = dots[id].size;
    out.id = id;
    return out;
}
fragment float4 dot_fragment(Out in [[stage_in]], float2 at [[point_coord]],
                             const device Dot* dots [[buffer(0)]]) {
    return float4(1, at, dots[in.id].weight);
}
fragment float4 edge_fragment(Out in [[stage_in]], float2 at [[point_coord]]) {
    if (at.x > 0.5) discard_fragment();
    return float4(1, fwidth(in.position.x), at);
}
fragment float4 mixed_fragment(Out in [[stage_in]], float2 at [[point_coord]],
                               const device Dot* dots [[buffer(0)]]) {
    float own = dots[in.id].weight * 2 + 1;
    uint beside = at.x > 0.5 ? in.id + 1 : in.id;
    float other = dots[beside].weight;
    if (at.y > 0.5) other += dots[in.id].size;
    return float4(1, own, other, own * at.x);
}
fragment float4 weight_fragment(Out in [[stage_in]], const device Dot* dots [[buffer(0)]]) {
    float weight = dots[in.id].weight;
    return float4(weight, -weight, 1, weight * 0.5);
}
fragment float4 disc_fragment(Out in [[stage_in]], float2 at [[point_coord]]) {
    if (distance(at, 0.5) > 0.25) discard_fragment();
    return float4(1, 2, in.position.xy / 256);
}
)msl";

struct Dot {
    std::array<float, 4> position{};
    float size = 0;
    float weight = 0;
    std::array<float, 2> padding{}; // float4 aligns to 16 bytes
};

// x and y in pixels from the upper left.
Dot dotAt(double x, double y, float size, float weight = 1) {
    return {
        {static_cast<float>(x / width * 2 - 1), static_cast<float>(1 - y / height * 2), 0.5f, 1},
        size,
        weight};
}

using Picture = std::vector<std::array<float, 4>>;

float toFloat(float value) {
    return value;
}

float toFloat(std::uint16_t half) {
    const int exponent = half >> 10 & 31;
    const float fraction = static_cast<float>(half & 1023) / 1024;
    const float value = exponent == 0    ? std::ldexp(fraction, -14)
                        : exponent == 31 ? std::numeric_limits<float>::infinity()
                                         : std::ldexp(1 + fraction, exponent - 15);
    return half & 0x8000 ? -value : value;
}

// The sums that Metal's rule gives: a pixel is covered where its centre lies in the half-open
// square.
Picture expected(const std::vector<Dot>& dots) {
    Picture picture(std::size_t{width} * height);
    for (const Dot& dot : dots) {
        const double size = std::min(dot.size, 511.0f);
        const double left = (dot.position[0] + 1.0) / 2 * width - size / 2;
        const double top = (1.0 - dot.position[1]) / 2 * height - size / 2;
        for (std::uint32_t y = 0; y < height; ++y)
            for (std::uint32_t x = 0; x < width; ++x) {
                const double atX = (x + 0.5 - left) / size, atY = (y + 0.5 - top) / size;
                if (!(atX >= 0 && atX < 1 && atY >= 0 && atY < 1))
                    continue;
                auto& pixel = picture[y * width + x];
                pixel[0] += 1;
                pixel[1] += static_cast<float>(atX);
                pixel[2] += static_cast<float>(atY);
                pixel[3] += dot.weight;
            }
    }
    return picture;
}

// The ways of drawing points, as on other devices.
struct Way {
    const char* name;
    PointTraits traits;
    std::size_t count = 0; // of points, so that a kernel adds them
    bool hasWideSums = true;
};

std::vector<Way> ways(const PointTraits& real) {
    const std::size_t many = std::size_t{width} * height / 16;
    return {{"this device", real},
            {"this device, many points", real, many},
            {"sums in words", real, many, false},
            {"points and quads", {.largest = 255, .dropsOutside = false}},
            {"points that drop outside", {.largest = 255, .dropsOutside = true}},
            {"quads", {.largest = 0.25f, .dropsOutside = true}}};
}

struct Points : Gpu {
    void SetUp() override {
        Gpu::SetUp();
        if (device)
            library = device->newLibrary(program);
    }

    std::unique_ptr<RenderPipelineState>
    dots(PixelFormat format, const char* fragment = "dot_fragment", bool blends = true) {
        const auto vertex = library->newFunction("dot_vertex");
        const auto color = library->newFunction(fragment);
        return device->newRenderPipelineState({.vertex = vertex.get(),
                                               .fragment = color.get(),
                                               .color = {.format = format,
                                                         .blends = blends,
                                                         .destinationRGB = BlendFactor::one,
                                                         .destinationAlpha = BlendFactor::one},
                                               .topology = TopologyClass::point});
    }

    // Adds points that draw nothing, so that there are `count`.
    Picture picture(const RenderPipelineState& state, std::vector<Dot> drawn, std::size_t count = 0,
                    const std::vector<std::uint16_t>& indices = {}) {
        drawn.resize(std::max(count, drawn.size()));
        const auto buffer = device->newBuffer(drawn.size() * sizeof(Dot));
        std::memcpy(buffer->contents(), drawn.data(), buffer->length());
        const PixelFormat format = state.parts().colorFormats[0];
        const auto texture = target(width, height, format);
        const auto numbers = device->newBuffer(64);
        std::copy(indices.begin(), indices.end(), static_cast<std::uint16_t*>(numbers->contents()));
        render(
            {.color = {.texture = texture.get(), .load = LoadAction::clear, .clear = {0, 0, 0, 0}}},
            [&](auto& encoder) {
                encoder.setRenderPipelineState(state);
                encoder.setVertexBuffer(*buffer, 0, 0);
                encoder.setFragmentBuffer(*buffer, 0, 0);
                if (indices.empty())
                    encoder.drawPrimitives(PrimitiveType::point, 0,
                                           static_cast<std::uint32_t>(drawn.size()));
                else
                    encoder.drawIndexedPrimitives(PrimitiveType::point,
                                                  static_cast<std::uint32_t>(indices.size()),
                                                  IndexType::uint16, *numbers, 0);
            });
        return format == PixelFormat::rgba16Float ? contents<std::uint16_t>(*texture)
                                                  : contents<float>(*texture);
    }

    template <typename Component> static Picture contents(const Texture& texture) {
        std::vector<std::array<Component, 4>> pixels(std::size_t{width} * height);
        texture.getBytes(pixels.data(), width * sizeof pixels[0], {0, 0, width, height}, 0);
        Picture picture(pixels.size());
        for (std::size_t at = 0; at < pixels.size(); ++at)
            std::transform(pixels[at].begin(), pixels[at].end(), picture[at].begin(),
                           [](Component component) { return toFloat(component); });
        return picture;
    }

    // Calls check(way) with the device drawing points by each way.
    template <typename Check> void eachWay(const Check& check) {
        PointTraits& traits = device->state().record.points;
        bool& wideSums = device->state().record.features.wideSums;
        const PointTraits real = traits;
        const bool hadWideSums = wideSums;
        for (const Way& way : ways(real)) {
            traits = way.traits;
            wideSums = hadWideSums && way.hasWideSums;
            check(way);
        }
        traits = real;
        wideSums = hadWideSums;
    }

    std::unique_ptr<Library> library;
};

// `bits` of each sum's significand are right.
void expectSame(const Picture& drawn, const Picture& wanted, int bits, const std::string& what) {
    int wrong = 0;
    for (std::size_t at = 0; at < drawn.size() && wrong < 5; ++at) {
        bool same = drawn[at][0] == wanted[at][0];
        for (std::size_t channel = 1; channel < 4; ++channel)
            same = same && std::abs(drawn[at][channel] - wanted[at][channel]) <=
                               std::ldexp(1 + wanted[at][channel], -bits) * (1 + wanted[at][0]);
        wrong += same ? 0 : 1;
        EXPECT_TRUE(same) << what << ", pixel " << at % width << " " << at / width << ": "
                          << drawn[at][0] << " " << drawn[at][1] << " " << drawn[at][2] << " "
                          << drawn[at][3] << " instead of " << wanted[at][0] << " " << wanted[at][1]
                          << " " << wanted[at][2] << " " << wanted[at][3];
    }
}

// Around every edge and corner, inside, and far away, at sixteenths of pixels.
std::vector<Dot> acrossEdges(float size) {
    std::vector<Dot> dots;
    const double reach = std::min(size / 2, 12.0f);
    for (const double x : {-reach + 0.4375, 0.0, 31.5, 60.0, 77.3125, 128.0, 128 + reach - 0.5})
        for (const double y : {-reach + 0.75, 0.0, 20.0, 32.5, 47.0625, 64.0, 64 + reach - 0.6875})
            dots.push_back(dotAt(x, y, size, static_cast<float>(dots.size() % 7)));
    for (const auto& [x, y] : {std::pair{-300.0, 40.0}, {400.0, 40.0}, {48.0, -270.0}})
        dots.push_back(dotAt(x, y, size));
    return dots;
}

TEST_F(Points, areSquaresOfTheirSizeEverywhere) {
    eachWay([&](const Way& way) {
        // A kernel adds into targets of halves, rounding once; others round with every point.
        const bool isHalf = way.count > 0;
        const auto state = dots(isHalf ? PixelFormat::rgba16Float : PixelFormat::rgba32Float);
        for (const float size :
             {0.0f, 0.5f, 0.9375f, 1.0f, 2.0f, 2.9375f, 63.5f, 255.0f, 256.0f, 511.0f, 700.0f}) {
            const std::vector<Dot> drawn = acrossEdges(size);
            expectSame(picture(*state, drawn, way.count), expected(drawn), isHalf ? 11 : 14,
                       way.name + (" with size " + std::to_string(size)));
        }
    });
}

TEST_F(Points, drawNothingAtInvalidPlaces) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    std::vector<Dot> dots_{dotAt(64, 32, nan), dotAt(64, 32, infinity), dotAt(64, 32, -4),
                           dotAt(nan, 32, 4),  dotAt(64, infinity, 4),  dotAt(-1e30, 1e30, 511)};
    for (const auto& [z, w] : {std::pair{nan, 1.0f},
                               {0.5f, nan},
                               {0.5f, infinity},
                               {infinity, 1.0f},
                               {0.0f, 0.0f},
                               {-0.25f, -1.0f},
                               {1.25f, 1.0f},
                               {-0.25f, 1.0f}})
        dots_.push_back({{0, 0, z, w}, 8, 1});
    const std::vector<Dot> none = dots_;
    dots_.push_back({{-1, 1, 2, 2}, 4, 3}); // on the far plane, at 32 and 16
    eachWay([&](const Way& way) {
        const auto state = dots(PixelFormat::rgba16Float);
        Picture wanted(std::size_t{width} * height);
        expectSame(picture(*state, none, way.count), wanted, 14, way.name);
        wanted = expected({dotAt(32, 16, 4, 3)});
        expectSame(picture(*state, dots_, way.count), wanted, 11, way.name);
    });
}

// Colours that do not add up are blended in the order of the points.
TEST_F(Points, coverEachOtherInTheirOrder) {
    const auto state = dots(PixelFormat::rgba16Float, "dot_fragment", false);
    const Picture drawn =
        picture(*state, {dotAt(20, 20, 10, 1), dotAt(24, 20, 300, 2), dotAt(22, 20, 4, 3)});
    EXPECT_EQ(drawn[20 * width + 21][3], 3);
    EXPECT_EQ(drawn[20 * width + 16][3], 2);
}

TEST_F(Points, areDrawnByIndices) {
    const std::vector<Dot> given{dotAt(20, 20, 10, 1), dotAt(24, 20, 30, 2), dotAt(90, 40, 4, 3),
                                 dotAt(22, 20, 4, 4)};
    eachWay([&](const Way& way) {
        for (const bool blends : {false, true}) {
            const auto state = dots(PixelFormat::rgba16Float, "dot_fragment", blends);
            expectSame(picture(*state, given, 0, {3, 1, 0}),
                       picture(*state, {given[3], given[1], given[0]}), 7, way.name);
        }
    });
}

// The sums of many small points are the same in any order, byte for byte; drawn points agree with
// them within the rounding of halves.
TEST_F(Points, addUpAlikeInAnyOrder) {
    std::mt19937 random(7);
    // Sixteenths of pixels: finer edges are each device's own.
    std::uniform_int_distribution<int> x(30 * 16, 50 * 16), y(20 * 16, 40 * 16), size(1, 3 * 8);
    std::uniform_real_distribution<float> weight(-1, 2);
    std::vector<Dot> many(3000);
    for (Dot& dot : many)
        dot = dotAt(x(random) / 16.0, y(random) / 16.0, static_cast<float>(size(random)) / 8,
                    weight(random));
    const auto state = dots(PixelFormat::rgba16Float);
    const Picture first = picture(*state, many);
    const PointTraits real = device->state().record.points;
    device->state().record.points.splats = false;
    const Picture drawn = picture(*state, many);
    const bool hadMany = std::exchange(device->state().record.features.multiDraws, false);
    EXPECT_EQ(picture(*state, many), drawn); // one draw for each block of points
    device->state().record.features.multiDraws = hadMany;
    device->state().record.points = real;
    std::shuffle(many.begin(), many.end(), random);
    const Picture second = picture(*state, many);
    if (real.splats) {
        EXPECT_EQ(first, second);
    }
    int differ = 0;
    for (std::size_t at = 0; at < first.size(); ++at)
        for (std::size_t channel = 0; channel < 4; ++channel)
            differ += std::abs(first[at][channel] - drawn[at][channel]) >
                      std::ldexp(4 + std::abs(drawn[at][0]), -11) * (2 + drawn[at][0]);
    EXPECT_EQ(differ, 0);
}

// NaN adds nothing and infinity the greatest half, whether the points are drawn or a kernel adds
// them because there are many for the picture.
TEST_F(Points, addNeitherNaNNorInfinityByAnyWay) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::vector<Dot> strange{dotAt(8.5, 8.5, 1, std::nanf("")), dotAt(20.5, 8.5, 1, infinity),
                                   dotAt(32.5, 8.5, 1, -infinity), dotAt(44.5, 8.5, 1, 1e30f),
                                   dotAt(56.5, 8.5, 1, 3)};
    eachWay([&](const Way& way) {
        const auto state = dots(PixelFormat::rgba16Float, "weight_fragment");
        const Picture drawn = picture(*state, strange, way.count);
        const auto at = [&](std::size_t x) { return drawn[8 * width + x]; };
        constexpr float most = 65504;
        EXPECT_EQ(at(8), (std::array<float, 4>{0, 0, 1, 0})) << way.name;
        EXPECT_EQ(at(20), (std::array{most, -most, 1.0f, most})) << way.name;
        EXPECT_EQ(at(32), (std::array{-most, most, 1.0f, -most})) << way.name;
        EXPECT_EQ(at(44), (std::array{most, -most, 1.0f, most})) << way.name;
        EXPECT_EQ(at(56), (std::array{3.0f, -3.0f, 1.0f, 1.5f})) << way.name;
    });
}

// A kernel cannot run a fragment function with derivatives.
TEST_F(Points, discardAndDeriveByEveryWay) {
    for (const char* const fragment : {"edge_fragment", "disc_fragment"}) {
        std::vector<Picture> pictures;
        eachWay([&](const Way& way) {
            pictures.push_back(picture(*dots(PixelFormat::rgba16Float, fragment),
                                       {dotAt(40, 30, 12), dotAt(70.5, 30.5, 3)}, way.count));
            EXPECT_EQ(pictures.back()[30 * width + 39][0], 1) << fragment << ", " << way.name;
            EXPECT_EQ(pictures.back()[30 * width + 44][0], 0) << fragment << ", " << way.name;
            expectSame(pictures.back(), pictures.front(), 10, std::string(fragment) + way.name);
        });
    }
}

// Loads that are the same over a point move to the vertex function, others do not.
TEST_F(Points, readTheirBuffersByEveryWay) {
    for (const float size : {3.0f, 12.0f})
        eachWay([&](const Way& way) {
            const Picture drawn =
                picture(*dots(PixelFormat::rgba16Float, "mixed_fragment"),
                        {dotAt(39.5, 29.5, size, 5), dotAt(-200, 0, 1, 7)}, way.count);
            const float near = 0.5f - 1 / size, far = 0.5f + 1 / size; // a pixel's width aside
            const Picture wanted{{1, 11, 5, 11 * near},
                                 {1, 11, 7, 11 * far},
                                 {1, 11, 5 + size, 11 * near},
                                 {1, 11, 7 + size, 11 * far}};
            const auto at = [&](float x, float y) {
                return drawn[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)];
            };
            expectSame({at(38.5f, 28.5f), at(40.5f, 28.5f), at(38.5f, 30.5f), at(40.5f, 30.5f)},
                       wanted, 10, way.name + (" with size " + std::to_string(size)));
        });
}

// Other draws before and after in one encoder, a part of the buffer, a viewport and a scissor.
TEST_F(Points, keepTheirOrderAmongOtherDraws) {
    const auto whole = pipeline(wholeTarget(),
                                glsl(msl::Stage::fragment, "quarter",
                                     "layout(location = 0) in vec2 at;\n"
                                     "layout(location = 0) out vec4 color;\n"
                                     "void main() { color = vec4(0, 0, 0.25, 0); }\n"),
                                {.color = {.format = PixelFormat::rgba16Float,
                                           .blends = true,
                                           .destinationRGB = BlendFactor::one,
                                           .destinationAlpha = BlendFactor::one}});
    std::vector<Dot> all(600, dotAt(64, 32, 8)); // these are not drawn
    all[599] = dotAt(64, 32, 2);
    eachWay([&](const Way& way) {
        const auto state = dots(PixelFormat::rgba16Float);
        const std::uint32_t start = 599, count = way.count > 0 ? 600 : 1;
        all.resize(start + count);
        const auto buffer = device->newBuffer(all.size() * sizeof(Dot));
        std::memcpy(buffer->contents(), all.data(), buffer->length());
        const auto texture = target(width, height, PixelFormat::rgba16Float);
        render(
            {.color = {.texture = texture.get(), .load = LoadAction::clear, .clear = {0, 0, 0, 0}}},
            [&](auto& encoder) {
                encoder.setRenderPipelineState(*whole);
                encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
                encoder.setRenderPipelineState(*state);
                encoder.setVertexBuffer(*buffer, 0, 0);
                encoder.setFragmentBuffer(*buffer, 0, 0);
                encoder.setViewport({.originX = 64, .originY = 32, .width = 64, .height = 32});
                encoder.setScissorRect({.x = 0, .y = 0, .width = 96, .height = 64});
                encoder.drawPrimitives(PrimitiveType::point, start, count);
                encoder.setRenderPipelineState(*whole);
                encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
            });
        const Picture drawn = contents<std::uint16_t>(*texture);
        const auto at = [&](std::uint32_t x, std::uint32_t y) { return drawn[y * width + x]; };
        // Twice a quarter in the viewport and outside of it; the point's left half is left.
        EXPECT_EQ(at(10, 10), (std::array{0.0f, 0.0f, 0.25f, 0.0f})) << way.name;
        EXPECT_EQ(at(95, 47), (std::array{1.0f, 0.25f, 0.75f, 1.0f})) << way.name;
        EXPECT_EQ(at(95, 48), (std::array{1.0f, 0.25f, 1.25f, 1.0f})) << way.name;
        EXPECT_EQ(at(96, 48)[0], 0) << way.name;
        EXPECT_EQ(at(94, 48)[0], 0) << way.name;
    });
}

TEST_F(Points, allocateNothingOnceWarm) {
    withoutValidation();
    const auto state = dots(PixelFormat::rgba16Float);
    const auto buffer = device->newBuffer(5000 * sizeof(Dot));
    const auto texture = target(width, height, PixelFormat::rgba16Float);
    const auto frame = [&] {
        render({.color = {.texture = texture.get()}}, [&](auto& encoder) {
            encoder.setRenderPipelineState(*state);
            encoder.setVertexBuffer(*buffer, 0, 0);
            encoder.setFragmentBuffer(*buffer, 0, 0);
            encoder.drawPrimitives(PrimitiveType::point, 0, 5000);
        });
    };
    EXPECT_EQ(heapCountOnceWarm(frame), 0u);
}

} // namespace
} // namespace tarnwick::tests
