// Patches: how the factors divide them, and pictures of them.
#include "tests/TarnwickGPU/Gpu.h"
#include "tests/Thrown.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <set>

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr const char* head = "#include <metal_stdlib>\nusing namespace metal;\n";

// The half nearest to a number of the tests, which have few bits.
std::uint16_t half(float value) {
    if (std::isnan(value))
        return 0x7e00;
    const auto number = static_cast<_Float16>(value);
    std::uint16_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

class Patches : public Gpu {
  protected:
    void SetUp() override {
        Gpu::SetUp();
        if (device)
            picture = target(128, 128);
    }
    std::unique_ptr<RenderPipelineState> pipelineOf(const std::string& vertex,
                                                    const TessellationDescriptor& tessellation,
                                                    const VertexDescriptor* descriptor = nullptr) {
        const auto first = library->newFunction(vertex), second = library->newFunction("paint");
        return device->newRenderPipelineState({.vertex = first.get(),
                                               .fragment = second.get(),
                                               .vertexDescriptor = descriptor,
                                               .tessellation = tessellation,
                                               .color = {.format = PixelFormat::rgba8Unorm}});
    }
    template <typename Encode> void render(const RenderPipelineState& state, const Encode& encode) {
        Gpu::render({.color = {.texture = picture.get(), .load = LoadAction::clear}},
                    [&](auto& encoder) {
                        encoder.setRenderPipelineState(state);
                        encode(encoder);
                    });
    }
    template <typename Value> std::unique_ptr<Buffer> filled(const std::vector<Value>& values) {
        auto buffer = device->newBuffer(values.size() * sizeof(Value));
        std::memcpy(buffer->contents(), values.data(), values.size() * sizeof(Value));
        return buffer;
    }
    // The factors of quads: each edge and both insides alike.
    std::unique_ptr<Buffer> quadFactors(const std::vector<float>& factors) {
        std::vector<std::uint16_t> halves;
        for (const float factor : factors)
            halves.insert(halves.end(), 6, half(factor));
        return filled(halves);
    }

    std::unique_ptr<Library> library;
    std::unique_ptr<Texture> picture;
};

constexpr const char* marks = R"(
[[patch(quad)]] vertex float4 mark(float2 where [[position_in_patch]],
                                   device atomic_uint& count [[buffer(0)]],
                                   device float2* out [[buffer(1)]]) {
    out[atomic_fetch_add_explicit(&count, 1, memory_order_relaxed)] = where;
    return 0;
}
fragment float4 paint() { return 1; }
)";

struct Division {
    TessellationPartitionMode mode;
    std::uint32_t maxFactor;
    float factor;
    float scale; // 0: not scaled
    std::size_t segments;
    bool hasShorter = false; // two segments that are shorter than the others
};

// The distances between the different values, ascending.
std::vector<float> gapsOf(const std::set<float>& values) {
    std::vector<float> gaps;
    for (auto at = values.begin(); at != values.end() && std::next(at) != values.end(); ++at)
        gaps.push_back(*std::next(at) - *at);
    std::sort(gaps.begin(), gaps.end());
    return gaps;
}

TEST_F(Patches, divideAsTheFactorsSay) {
    library = device->newLibrary(std::string(head) + marks);
    using enum TessellationPartitionMode;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<Division> divisions{{pow2, 16, 5, 0, 8},
                                          {pow2, 4, 5, 0, 4},
                                          {pow2, 16, 1, 0, 1},
                                          {integer, 16, 4.25f, 0, 5},
                                          {integer, 3, 7, 0, 3},
                                          {integer, 16, 2, 1.5f, 3},
                                          {fractionalOdd, 16, 2.5f, 0, 3, true},
                                          {fractionalOdd, 16, 5, 0, 5},
                                          {fractionalEven, 16, 3.5f, 0, 4, true},
                                          {integer, 16, 0, 0, 0},
                                          {integer, 16, -1, 0, 0},
                                          {pow2, 16, nan, 0, 0}};
    for (const Division& division : divisions) {
        const auto count = device->newBuffer(4), positions = device->newBuffer(8 * 4096);
        const auto state = pipelineOf("mark", {.partitionMode = division.mode,
                                               .maxFactor = division.maxFactor,
                                               .scalesFactors = division.scale > 0});
        const auto factors = quadFactors({division.factor});
        render(*state, [&](auto& encoder) {
            encoder.setVertexBuffer(*count, 0, 0);
            encoder.setVertexBuffer(*positions, 0, 1);
            encoder.setTessellationFactorBuffer(*factors, 0, 0);
            encoder.setTessellationFactorScale(division.scale);
            encoder.drawPatches(1, 0, 1);
        });
        const auto given = *static_cast<const std::uint32_t*>(count->contents());
        const auto* places = static_cast<const std::array<float, 2>*>(positions->contents());
        std::set<float> columns, rows;
        std::set<std::array<float, 2>> all(places, places + given);
        for (const auto& [u, v] : all) {
            columns.insert(u);
            rows.insert(v);
        }
        const std::string text = "mode " + std::to_string(static_cast<int>(division.mode)) +
                                 ", factor " + std::to_string(division.factor);
        EXPECT_EQ(all.size(), columns.size() * rows.size()) << text;
        for (const std::vector<float>& gaps : {gapsOf(columns), gapsOf(rows)}) {
            ASSERT_EQ(gaps.size(), division.segments) << text;
            if (division.segments == 0)
                continue;
            EXPECT_NEAR(gaps.back(), gaps[division.hasShorter ? 2 : 0], 1e-4) << text;
            EXPECT_NEAR(gaps[0], gaps[division.hasShorter ? 1 : 0], 1e-4) << text;
            EXPECT_EQ(gaps[0] < 0.95f * gaps.back(), division.hasShorter) << text;
        }
    }
}

// A quad bent to a disc: its edges v = 0 and v = 1 meet, so the factors are the corners of a
// regular polygon.
constexpr const char* discs = R"(
struct Point { float2 at [[attribute(0)]]; };
struct Patch {
    float3 colour [[attribute(1)]];
    float size [[attribute(2)]];
    patch_control_point<Point> points;
};
struct Out { float4 at [[position]]; float3 colour [[flat]]; };
[[patch(quad, 2)]] vertex Out disc(Patch patch [[stage_in]], float2 where [[position_in_patch]],
                                   uint number [[patch_id]], uint instance [[instance_id]]) {
    const float angle = where.y * 2 * M_PI_F;
    const float2 arm = (patch.points[1].at - patch.points[0].at) * patch.size * where.x;
    const float2 turned = float2(arm.x * cos(angle) - arm.y * sin(angle),
                                 arm.x * sin(angle) + arm.y * cos(angle));
    return {float4(patch.points[0].at + turned, 0, 1),
            patch.colour + float3(0, 0, number * 0.2f + instance * 0.1f)};
}
fragment float4 paint(Out in [[stage_in]]) { return float4(in.colour, 1); }
)";

struct Polygon {
    std::uint32_t patch, instance, corners;
    std::uint32_t points; // the patch whose control points are taken
};

const std::array<std::array<float, 2>, 4> centres{
    {{-0.5f, 0.5f}, {0.5f, 0.5f}, {-0.5f, -0.5f}, {0.5f, -0.5f}}};
const std::array<std::array<float, 3>, 4> colours{
    {{0.2f, 0, 0}, {0.4f, 0.6f, 0}, {0.6f, 0.2f, 0}, {0.8f, 1, 0}}};
const std::array<float, 3> sizes{1, 0.5f, 0.25f};

class Discs : public Patches {
  protected:
    void SetUp() override {
        Patches::SetUp();
        if (!device)
            return;
        library = device->newLibrary(std::string(head) + discs);
        std::vector<float> points;
        for (const auto& [x, y] : centres)
            points.insert(points.end(), {x, y, x + 0.4f, y});
        controlPoints = filled(points);
        descriptor.attributes[0] = {.format = VertexFormat::float2, .bufferIndex = 5};
        descriptor.layouts[5] = {.stride = 8, .step = StepFunction::perPatchControlPoint};
        descriptor.attributes[1] = {.format = VertexFormat::float3, .bufferIndex = 6};
        descriptor.layouts[6] = {.stride = 12, .step = StepFunction::perPatch};
        descriptor.attributes[2] = {.format = VertexFormat::float_, .bufferIndex = 7};
        descriptor.layouts[7] = {.stride = 4, .step = StepFunction::perInstance};
    }
    template <typename Encode>
    void drawDiscs(const TessellationDescriptor& tessellation, const Buffer& factors,
                   std::size_t instanceStride, const Encode& encode) {
        render(*pipelineOf("disc", tessellation, &descriptor), [&](auto& encoder) {
            encoder.setVertexBuffer(*controlPoints, 0, 5);
            encoder.setVertexBytes(colours.data(), sizeof colours, 6);
            encoder.setVertexBytes(sizes.data(), sizeof sizes, 7);
            encoder.setTessellationFactorBuffer(factors, 0, instanceStride);
            encode(encoder);
        });
    }
    void expectPolygons(const std::vector<Polygon>& polygons) const;

    std::unique_ptr<Buffer> controlPoints;
    VertexDescriptor descriptor;
};

// Pixels, positive inside: the distance of a pixel's centre from the nearest edge.
float depthIn(const Polygon& polygon, std::uint32_t column, std::uint32_t row) {
    const auto& [centreX, centreY] = centres[polygon.points];
    const float x = (static_cast<float>(column) + 0.5f) / 64 - 1 - centreX;
    const float y = 1 - (static_cast<float>(row) + 0.5f) / 64 - centreY;
    const float radius = 0.4f * sizes[polygon.instance];
    const float slice = 2 * std::numbers::pi_v<float> / static_cast<float>(polygon.corners);
    float depth = 1e9f;
    for (std::uint32_t edge = 0; edge < polygon.corners; ++edge) {
        const float normal = (static_cast<float>(edge) + 0.5f) * slice;
        const float along = x * std::cos(normal) + y * std::sin(normal);
        depth = std::min(depth, radius * std::cos(slice / 2) - along);
    }
    return depth * 64;
}

// Pixels nearer to an edge than half of one's diagonal may have either colour.
void Discs::expectPolygons(const std::vector<Polygon>& polygons) const {
    std::size_t inside = 0;
    for (std::uint32_t row = 0; row < 128; ++row)
        for (std::uint32_t column = 0; column < 128; ++column) {
            std::array<float, 3> wanted{};
            bool isNearEdge = false;
            for (const Polygon& polygon : polygons) {
                const float depth = depthIn(polygon, column, row);
                isNearEdge = isNearEdge || std::abs(depth) < 0.75f;
                if (depth > 0)
                    wanted = {colours[polygon.patch][0], colours[polygon.patch][1],
                              static_cast<float>(polygon.patch) * 0.2f +
                                  static_cast<float>(polygon.instance) * 0.1f};
            }
            if (isNearEdge)
                continue;
            const Pixel pixel = pixelAt(*picture, column, row);
            inside += wanted[0] > 0;
            for (std::size_t part = 0; part < 3; ++part)
                ASSERT_NEAR(pixel[part], 255 * wanted[part], 1) << column << ", " << row;
        }
    EXPECT_GT(inside, 400u);
}

TEST_F(Discs, haveTheCornersOfTheirFactors) {
    const TessellationDescriptor perPatch{.partitionMode = TessellationPartitionMode::integer,
                                          .factorStepFunction =
                                              TessellationFactorStepFunction::perPatch};
    const auto factors = quadFactors({3, 4, 5, 12});
    drawDiscs(perPatch, *factors, 0, [](auto& encoder) { encoder.drawPatches(2, 0, 4); });
    expectPolygons({{0, 0, 3, 0}, {1, 0, 4, 1}, {2, 0, 5, 2}, {3, 0, 12, 3}});

    // From the second patch on; the sizes are those of two instances.
    drawDiscs(perPatch, *factors, 0,
              [](auto& encoder) { encoder.drawPatches(2, 1, 2, nullptr, 0, 2, 1); });
    expectPolygons({{1, 1, 4, 1}, {2, 1, 5, 2}, {1, 2, 4, 1}, {2, 2, 5, 2}});
}

TEST_F(Discs, takeTheFactorsOfTheInstance) {
    const auto factors = quadFactors({3, 4, 5, 6});
    drawDiscs({.partitionMode = TessellationPartitionMode::integer,
               .factorStepFunction = TessellationFactorStepFunction::perPatchAndPerInstance},
              *factors, 24, [](auto& encoder) { encoder.drawPatches(2, 0, 2, nullptr, 0, 2); });
    expectPolygons({{0, 0, 3, 0}, {1, 0, 4, 1}, {0, 1, 5, 0}, {1, 1, 6, 1}});
}

TEST_F(Discs, areDrawnByIndices) {
    const auto factors = quadFactors({3, 5});
    const auto numbers = filled<std::uint32_t>({9, 3, 1});
    // By the place in the draw, the factors; by the number, the colour and the control points.
    const TessellationDescriptor perPatch{.partitionMode = TessellationPartitionMode::integer,
                                          .factorStepFunction =
                                              TessellationFactorStepFunction::perPatch};
    drawDiscs(perPatch, *factors, 0,
              [&](auto& encoder) { encoder.drawPatches(2, 0, 2, numbers.get(), 4); });
    expectPolygons({{3, 0, 3, 3}, {1, 0, 5, 1}});

    TessellationDescriptor indexed = perPatch;
    indexed.controlPointIndices = IndexType::uint16;
    const auto points = filled<std::uint16_t>({4, 5, 2, 3, 6, 7, 0, 1});
    drawDiscs(indexed, *factors, 0,
              [&](auto& encoder) { encoder.drawIndexedPatches(2, 0, 2, nullptr, 0, *points, 0); });
    expectPolygons({{0, 0, 3, 2}, {1, 0, 5, 1}});
}

constexpr const char* facing = R"(
struct Out { float4 at [[position]]; };
[[patch(triangle)]] vertex Out flat_patch(float3 where [[position_in_patch]]) {
    return {float4(where.y * 4 - 1, where.z * 4 - 1, 0, 1)};
}
fragment float4 paint(bool isFront [[front_facing]]) { return isFront ? float4(0, 1, 0, 1) : 1; }
)";

TEST_F(Patches, turnByTheirWinding) {
    library = device->newLibrary(std::string(head) + facing);
    const auto factors = filled<std::uint16_t>({half(3), half(2), half(1), half(2)});
    std::array<Pixel, 2> pixels{};
    for (const Winding winding : {Winding::clockwise, Winding::counterClockwise}) {
        render(*pipelineOf("flat_patch", {.outputWindingOrder = winding}), [&](auto& encoder) {
            encoder.setTessellationFactorBuffer(*factors, 0, 0);
            encoder.drawPatches(3, 0, 1);
        });
        pixels[static_cast<std::size_t>(winding)] = pixelAt(*picture, 20, 90);
    }
    EXPECT_NE(pixels[0], pixels[1]);
}

TEST_F(Patches, areRefusedWithWhatTheDeviceLacks) {
    library = device->newLibrary(std::string(head) + facing);
    EXPECT_EQ(thrownBy<DeviceError>([&] { pipelineOf("flat_patch", {.maxFactor = 12}); }),
              "The device could not make the render pipeline of flat_patch and paint: the maximum "
              "of its factors is 12, which is not a power of two.");
    const std::string text =
        thrownBy<DeviceError>([&] { pipelineOf("flat_patch", {.maxFactor = 128}); });
    EXPECT_TRUE(text.ends_with(" takes 1 to 64.")) << text;
}

} // namespace

} // namespace tarnwick::tests
