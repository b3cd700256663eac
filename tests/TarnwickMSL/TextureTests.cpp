// Sampling from Metal source to numbers: every filter, address and coordinate mode beside a
// sampler written here from the formulas of Vulkan 1.3, 16.
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "tests/TarnwickMSL/KernelTest.h"
#include "tests/Validation.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <span>
#include <string>
#include <vector>

namespace tarnwick {

namespace {

using tests::Texel;

struct Level {
    int width = 0, height = 0;
    std::vector<Texel> texels;
};

enum class Address { clampToZero, clampToEdge, repeat, mirroredRepeat, clampToBorder };
constexpr std::array addressNames{"clamp_to_zero", "clamp_to_edge", "repeat", "mirrored_repeat",
                                  "clamp_to_border"};
enum class Filter { nearest, linear };
constexpr std::array filterNames{"nearest", "linear"};
enum class Mips { none, nearest, linear };
constexpr std::array mipNames{"none", "nearest", "linear"};

struct Mode {
    Address address = Address::clampToEdge;
    Filter filter = Filter::nearest;
    Mips mips = Mips::none;
    bool isPixel = false;
};

int wrapped(int at, int size, Address address) { // -1: the border
    switch (address) {
    case Address::clampToEdge:
        return std::clamp(at, 0, size - 1);
    case Address::repeat:
        return ((at % size) + size) % size;
    case Address::mirroredRepeat: {
        int turn = ((at % (2 * size)) + 2 * size) % (2 * size);
        return turn < size ? turn : 2 * size - 1 - turn;
    }
    case Address::clampToZero:
    case Address::clampToBorder:
        return at < 0 || at >= size ? -1 : at;
    }
    return -1;
}

Texel texelAt(const Level& level, int x, int y, const Mode& mode) {
    int column = wrapped(x, level.width, mode.address),
        row = wrapped(y, level.height, mode.address);
    if (column < 0 || row < 0) // the border colour of `source` is opaque white
        return mode.address == Address::clampToZero ? Texel{} : Texel{1, 1, 1, 1};
    return level.texels[static_cast<std::size_t>(row * level.width + column)];
}

Texel mixed(const Texel& a, const Texel& b, float part) {
    Texel result;
    for (std::size_t lane = 0; lane < 4; ++lane)
        result[lane] = a[lane] + (b[lane] - a[lane]) * part;
    return result;
}

Texel sampled(const Level& level, float u, float v, const Mode& mode) {
    float x = u * static_cast<float>(level.width), y = v * static_cast<float>(level.height);
    if (mode.filter == Filter::nearest)
        return texelAt(level, static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)),
                       mode);
    int left = static_cast<int>(std::floor(x - 0.5f)), top = static_cast<int>(std::floor(y - 0.5f));
    float across = x - 0.5f - static_cast<float>(left), down = y - 0.5f - static_cast<float>(top);
    return mixed(
        mixed(texelAt(level, left, top, mode), texelAt(level, left + 1, top, mode), across),
        mixed(texelAt(level, left, top + 1, mode), texelAt(level, left + 1, top + 1, mode), across),
        down);
}

Texel sampled(const std::vector<Level>& levels, float u, float v, float lod, const Mode& mode) {
    if (mode.isPixel) {
        u /= static_cast<float>(levels[0].width);
        v /= static_cast<float>(levels[0].height);
    }
    float last = static_cast<float>(levels.size() - 1);
    lod = std::clamp(lod, 0.0f, mode.mips == Mips::none ? 0.0f : last);
    if (mode.mips != Mips::linear)
        return sampled(levels[static_cast<std::size_t>(std::ceil(lod + 0.5f) - 1)], u, v, mode);
    auto lower = static_cast<std::size_t>(lod), upper = std::min(lower + 1, levels.size() - 1);
    return mixed(sampled(levels[lower], u, v, mode), sampled(levels[upper], u, v, mode),
                 lod - std::floor(lod));
}

// A program with a kernel for each mode, which samples at `at[i].xy` and the level `at[i].z`.
std::string source(const std::vector<Mode>& modes) {
    std::string text;
    for (std::size_t n = 0; n < modes.size(); ++n) {
        auto name = [](const auto& names, auto value) {
            return std::string(names[static_cast<std::size_t>(value)]);
        };
        text += "kernel void sample" + std::to_string(n) +
                "(device float4* out [[buffer(0)]], const device float4* at [[buffer(1)]],"
                " texture2d<float> image [[texture(0)]], uint i [[thread_position_in_grid]]) {\n"
                "    constexpr sampler s(coord::" +
                (modes[n].isPixel ? "pixel" : "normalized") +
                ", address::" + name(addressNames, modes[n].address) +
                ", filter::" + name(filterNames, modes[n].filter) +
                ", mip_filter::" + name(mipNames, modes[n].mips) +
                ", border_color::opaque_white);\n"
                "    out[i] = image.sample(s, at[i].xy, level(at[i].z));\n}\n";
    }
    return text;
}

class Textures : public tests::KernelTest {
  protected:
    void SetUp() override {
        KernelTest::SetUp();
        if (!device)
            return;
        for (int size = 8; size >= 2; size /= 2)
            levels.push_back(levelOf(size, size * 3 / 4 + (size == 2)));
        image = device->newTexture({.format = gpu::PixelFormat::rgba32Float,
                                    .width = 8,
                                    .height = 6,
                                    .mipLevels = 3,
                                    .sampleCount = 1,
                                    .usage = {.shaderRead = true}});
        ASSERT_TRUE(image);
        levels[2].height = 1;
        for (std::uint32_t n = 0; n < 3; ++n)
            image->replace({0, 0, static_cast<std::uint32_t>(levels[n].width),
                            static_cast<std::uint32_t>(levels[n].height)},
                           n, levels[n].texels.data(),
                           static_cast<std::size_t>(levels[n].width) * sizeof(Texel));
    }

    static Level levelOf(int width, int height) {
        Level level{width, height, {}};
        for (int n = 0; n < width * height; ++n) {
            auto value = static_cast<float>((n * 37 + width * 11) % 64) / 64.0f;
            level.texels.push_back({value, 1 - value, value * value, 0.25f + value / 2});
        }
        return level;
    }

    void compareWithReference(const std::vector<Mode>& modes, const std::vector<Texel>& inputs) {
        const auto library = compiled(source(modes));
        for (std::size_t n = 0; n < modes.size(); ++n) {
            std::vector<Texel> given = inputs;
            if (modes[n].isPixel)
                for (Texel& at : given) {
                    at[0] *= 8;
                    at[1] *= 6;
                }
            auto results = texels(*library, "sample" + std::to_string(n), given, image.get());
            for (std::size_t i = 0; i < given.size(); ++i) {
                Texel expected = sampled(levels, given[i][0], given[i][1], given[i][2], modes[n]);
                for (std::size_t lane = 0; lane < 4; ++lane)
                    ASSERT_NEAR(results[i][lane], expected[lane], 0.004f)
                        << "mode " << n << " at " << given[i][0] << ", " << given[i][1] << " level "
                        << given[i][2];
            }
        }
    }

    std::vector<Level> levels;
    std::unique_ptr<gpu::Texture> image;
};

// Coordinates from well outside to well inside, off the texels' borders.
std::vector<Texel> positions(float level) {
    std::vector<Texel> all;
    for (int y = -9; y < 18; ++y)
        for (int x = -9; x < 18; ++x)
            all.push_back({(static_cast<float>(x) + 0.37f) / 8, (static_cast<float>(y) + 0.71f) / 6,
                           level, 0});
    return all;
}

} // namespace

TEST_F(Textures, sampleInEveryFilterAddressAndCoordinateMode) {
    std::vector<Mode> modes;
    for (std::size_t address = 0; address < addressNames.size(); ++address)
        for (std::size_t filter = 0; filter < filterNames.size(); ++filter)
            for (bool isPixel : {false, true})
                modes.push_back({static_cast<Address>(address), static_cast<Filter>(filter),
                                 Mips::none, isPixel});
    compareWithReference(modes, positions(0));
}

TEST_F(Textures, sampleLevelsAsTheMipFilterSays) {
    std::vector<Mode> modes;
    for (Filter filter : {Filter::nearest, Filter::linear})
        for (Mips mips : {Mips::none, Mips::nearest, Mips::linear})
            modes.push_back({Address::repeat, filter, mips, false});
    for (float level : {0.0f, 0.3f, 0.7f, 1.0f, 1.4f, 1.6f, 2.0f, 5.0f})
        compareWithReference(modes, positions(level));
}

TEST_F(Textures, sampleAtOffsetsInTexels) {
    const auto library = compiled(R"(
kernel void shifted(device float4* out [[buffer(0)]], const device float4* at [[buffer(1)]],
                    texture2d<float> image [[texture(0)]], uint i [[thread_position_in_grid]]) {
    constexpr sampler s(filter::nearest, address::repeat);
    out[i] = image.sample(s, at[i].xy, level(0), int2(-1, 2));
}
kernel void shiftedBy(device float4* out [[buffer(0)]], const device float4* at [[buffer(1)]],
                      texture2d<float> image [[texture(0)]], uint i [[thread_position_in_grid]]) {
    constexpr sampler s(filter::nearest, address::repeat);
    out[i] = image.sample(s, at[i].xy, level(0), int2(at[i].zw));
}
)");
    const Mode repeat{Address::repeat, Filter::nearest, Mips::none, false};
    const std::vector<Texel> inside = positions(1);
    const auto shifted = texels(*library, "shifted", inside, image.get());
    const auto shiftedBy = texels(*library, "shiftedBy", inside, image.get());
    for (std::size_t i = 0; i < inside.size(); ++i) {
        const float u = inside[i][0], v = inside[i][1];
        EXPECT_EQ(shifted[i], sampled(levels[0], u - 1.0f / 8, v + 2.0f / 6, repeat)) << i;
        EXPECT_EQ(shiftedBy[i], sampled(levels[0], u + 1.0f / 8, v, repeat)) << i;
    }
}

} // namespace tarnwick
