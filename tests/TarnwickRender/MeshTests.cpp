#include "tests/TarnwickRender/Rendering.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

using Meshes = Rendering;

// A sheet, bent in its middle so that one wing stands before the other and crosses it, seen at a
// slant and in perspective. Its colour is its place on the sheet.
constexpr int cells = 8;
const std::string folded =
    "// @grid " + std::to_string(cells) +
    "\n"
    "struct Vertex { float4 position [[position]]; float3 color; };\n"
    "Vertex corner(float2 g, constant Uniforms& u, constant Params& p) {\n"
    "    float x = abs(g.x - 0.5) * 2.4 - 0.7 + g.y * 0.3;\n"
    "    float y = (g.y - 0.5) * 1.4 + (g.x - 0.5) * 0.35;\n"
    "    float w = 1.5 + (g.x - 0.5) * (g.y - 0.3) * 1.6 + y * 0.4;\n"
    "    return Vertex{float4(x, y, w - 0.7, w), float3(g.x < 0.5, g.x > 0.5, g.y)};\n}\n"
    "float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(v.color, 1.0);\n}\n";
const std::string backdrop = "float4 background(float2 uv, constant Uniforms& u, constant Params& "
                             "p) { return float4(0.0, 0.0, uv.x, 1.0); }\n";

struct Corner {
    std::array<double, 4> position;
    std::array<double, 3> color;
};

Corner corner(int column, int row) {
    const double gx = static_cast<double>(column) / cells, gy = static_cast<double>(row) / cells;
    const double x = std::abs(gx - 0.5) * 2.4 - 0.7 + gy * 0.3;
    const double y = (gy - 0.5) * 1.4 + (gx - 0.5) * 0.35;
    const double w = 1.5 + (gx - 0.5) * (gy - 0.3) * 1.6 + y * 0.4;
    return {{x, y, w - 0.7, w}, {gx < 0.5 ? 1.0 : 0.0, gx > 0.5 ? 1.0 : 0.0, gy}};
}

using Triangle = std::array<Corner, 3>;

std::vector<Triangle> triangles() {
    std::vector<Triangle> list;
    for (int row = 0; row < cells; ++row)
        for (int column = 0; column < cells; ++column) {
            const Corner right = corner(column + 1, row), upper = corner(column, row + 1);
            list.push_back({corner(column, row), right, upper});
            list.push_back({right, corner(column + 1, row + 1), upper});
        }
    return list;
}

// Where the line of sight through (x, y) of clip space meets the triangle: how much of each corner,
// up to a factor (Olano and Greer, "Triangle scan conversion using 2D homogeneous coordinates").
// Zeros where it passes by.
std::array<double, 3> shares(const Triangle& triangle, double x, double y) {
    std::array<double, 3> found{};
    double sum = 0;
    for (std::size_t at = 0; at < 3; ++at) {
        const auto& a = triangle[(at + 1) % 3].position;
        const auto& b = triangle[(at + 2) % 3].position;
        found[at] = x * (a[1] * b[3] - a[3] * b[1]) + y * (a[3] * b[0] - a[0] * b[3]) +
                    (a[0] * b[1] - a[1] * b[0]);
        sum += found[at];
    }
    for (double& share : found) {
        share /= sum;
        if (!(share >= 0))
            return {};
    }
    return found;
}

using Sample = std::array<double, 3>; // red, green, blue in 0..255

Sample sampleAt(const std::vector<Triangle>& mesh, double x, double y) {
    Sample seen{0, 0, (x + 1) / 2 * 255};
    double nearest = 1;
    for (const Triangle& triangle : mesh) {
        const auto share = shares(triangle, x, y);
        double z = 0, w = 0;
        Sample color{};
        for (std::size_t at = 0; at < 3; ++at) {
            z += share[at] * triangle[at].position[2];
            w += share[at] * triangle[at].position[3];
            for (std::size_t channel = 0; channel < 3; ++channel)
                color[channel] += share[at] * triangle[at].color[channel] * 255;
        }
        if (w > 0 && z / w < nearest) {
            nearest = z / w;
            seen = color;
        }
    }
    return seen;
}

constexpr int width = 96, height = 64;

// The mean of side x side samples a pixel.
Sample pixelAt(const std::vector<Triangle>& mesh, int column, int row, int side) {
    Sample mean{};
    for (int at = 0; at < side * side; ++at) {
        const double x = (column + (at % side + 0.5) / side) / width * 2 - 1;
        const double y = 1 - (row + (at / side + 0.5) / side) / height * 2;
        const Sample sample = sampleAt(mesh, x, y);
        for (std::size_t channel = 0; channel < 3; ++channel)
            mean[channel] += sample[channel] / (side * side);
    }
    return mean;
}

// Of a picture against the reference: the mean over all pixels and the largest difference.
struct Difference {
    double mean = 0, most = 0;

    void add(const Sample& one, const Sample& other) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const double difference = std::abs(one[channel] - other[channel]);
            mean += difference / (width * height * 3);
            most = std::max(most, difference);
        }
    }
};

} // namespace

// With four samples a pixel that an edge crosses is off by a quarter and a little more, where the
// samples lie unevenly; with one by as much as all of it.
TEST_F(Meshes, haveSmoothEdgesAndHideWhatLiesBehind) {
    const Picture picture = still(folded + backdrop, width, height);
    const std::vector<Triangle> mesh = triangles();
    Difference drawn, unsmoothed;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            const Sample wanted = pixelAt(mesh, column, row, 4);
            const Color color =
                colorAt(picture, static_cast<std::size_t>(column), static_cast<std::size_t>(row));
            drawn.add({static_cast<double>(color[0]), static_cast<double>(color[1]),
                       static_cast<double>(color[2])},
                      wanted);
            unsmoothed.add(pixelAt(mesh, column, row, 1), wanted);
        }
    EXPECT_LT(drawn.mean, 0.5);
    EXPECT_LT(drawn.most, 0.3 * 255);
    EXPECT_LT(drawn.mean * 3, unsmoothed.mean);
}

TEST_F(Meshes, lieOnTheirBackgroundOrOnANearBlack) {
    const std::string far =
        "// @grid 2\nstruct Vertex { float4 position [[position]]; };\n"
        "Vertex corner(float2 g, constant Uniforms& u, constant Params& p) {\n"
        "    return Vertex{float4(g.x - 1.0, g.y * 2.0 - 1.0, 0.999, 1.0)};\n}\n"
        "float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {\n"
        "    return float4(1.0, u.time, 0.0, 1.0);\n}\n";
    const Picture bare = still(far, 8, 8, 1);
    EXPECT_EQ(colorAt(bare, 2, 4), (Color{255, 255, 0}));
    EXPECT_EQ(colorAt(bare, 6, 4), (Color{9, 7, 8}));
    const Picture covered = still(far + backdrop, 8, 8, 1);
    EXPECT_EQ(colorAt(covered, 2, 4), (Color{255, 255, 0}));
    EXPECT_NEAR(colorAt(covered, 6, 4)[2], 6.5 / 8 * 255, 1);
}

TEST_F(Meshes, takeAMillionCells) {
    const std::string fine =
        "// @grid 1024\nstruct Vertex { float4 position [[position]]; float2 at; };\n"
        "Vertex corner(float2 g, constant Uniforms& u, constant Params& p) {\n"
        "    return Vertex{float4(g * 2.0 - 1.0, 0.5, 1.0), g};\n}\n"
        "float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {\n"
        "    return float4(v.at, 0.0, 1.0);\n}\n";
    const Picture picture = still(fine, 64, 64);
    for (std::size_t at = 0; at < 64; ++at) {
        const Color color = colorAt(picture, at, 63 - at / 2);
        EXPECT_NEAR(color[0], (static_cast<double>(at) + 0.5) / 64 * 255, 1);
        EXPECT_NEAR(color[1], (static_cast<double>(at / 2) + 0.5) / 64 * 255, 1);
    }
}
