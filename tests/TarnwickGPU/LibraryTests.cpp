// From a program's text to pixels: the layer's bindings are those that the compiler hands out.
#include "TarnwickGPU/Vulkan/Capabilities.h"
#include "tests/TarnwickGPU/Gpu.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr const char* program = R"(
#include <metal_stdlib>
using namespace metal;
struct Place { float2 offset; packed_float3 tint; float scale; };
struct Out { float4 position [[position]]; float2 at; };
vertex Out corner(uint id [[vertex_id]], constant float& size [[buffer(4)]]) {
    float2 at = float2(id & 1, id >> 1);
    return {float4(at * size - 1, 0, 1), float2(at.x, 1 - at.y) * 2};
}
fragment float4 paint(Out in [[stage_in]], constant Place& place [[buffer(3)]],
                      device const uint* words [[buffer(7)]], texture2d<float> image [[texture(2)]],
                      texture2d<float> missing [[texture(9)]]) {
    constexpr sampler wraps(address::repeat, filter::nearest);
    float4 texel = image.sample(wraps, in.at + place.offset);
    return texel + missing.read(uint2(0)) +
           float4(float3(place.tint) * place.scale, float(words[1]));
}
kernel void fill(device uint* words [[buffer(7)]], constant uint& first [[buffer(0)]],
                 uint id [[thread_position_in_grid]], uint count [[threads_per_grid]]) {
    words[id] = first + id * count;
}
fragment float4 endless(constant uint& stop [[buffer(0)]]) {
    uint turn = 1;
    while (turn != stop) turn = turn * 5 | 1;
    return float4(1);
}
fragment float4 lengthy(constant uint& stop [[buffer(0)]]) {
    uint sum = 0;
    for (uint turn = 0; turn < stop - 1; turn++) sum = sum * 5 + turn;
    return float4(1, sum, 1, 1);
}
)";

class LibraryTest : public Gpu {
  protected:
    std::unique_ptr<RenderPipelineState> fragmentPipeline(const Library& library,
                                                          const char* name) {
        const auto vertex = library.newFunction("corner"), fragment = library.newFunction(name);
        return device->newRenderPipelineState({.vertex = vertex.get(),
                                               .fragment = fragment.get(),
                                               .color = {.format = PixelFormat::rgba8Unorm}});
    }
};

TEST_F(LibraryTest, runsCompiledPrograms) {
    const auto library = device->newLibrary(program);
    EXPECT_EQ(library->functionNames(),
              (std::vector<std::string>{"corner", "paint", "fill", "endless", "lengthy"}));
    EXPECT_EQ(library->newFunction("none"), nullptr);
    const auto fill = device->newComputePipelineState(*library->newFunction("fill"));
    const auto paint = fragmentPipeline(*library, "paint");
    const auto words = device->newBuffer(64);
    const auto image = device->newTexture({.format = PixelFormat::rgba8Unorm, .width = 2});
    const std::array<Pixel, 2> texels{{{10, 0, 0, 0}, {20, 0, 0, 0}}};
    image->replace({0, 0, 2, 1}, 0, texels.data(), 8);
    const auto texture = target(2, 2);

    auto commands = queue->commandBuffer();
    auto compute = commands->computeCommandEncoder();
    compute->setComputePipelineState(*fill);
    compute->setBuffer(*words, 0, 7);
    const std::uint32_t first = 1;
    compute->setBytes(&first, 4, 0);
    compute->dispatchThreads({10, 1, 1}, {4, 1, 1});
    compute->endEncoding();
    auto encoder = commands->renderCommandEncoder(
        {.color = {.texture = texture.get(), .load = LoadAction::clear}});
    encoder->setRenderPipelineState(*paint);
    const float size = 4;
    encoder->setVertexBytes(&size, 4, 4);
    // offset, tint and scale as Metal lays them out: 8, 12 and 4 bytes.
    const std::array<float, 6> place{0.5f, 0, 0, 0.5f, 1, 0.5f};
    encoder->setFragmentBytes(place.data(), 24, 3);
    encoder->setFragmentBuffer(*words, 0, 7);
    encoder->setFragmentTexture(image.get(), 2);
    encoder->drawPrimitives(PrimitiveType::triangle, 0, 3);
    encoder->endEncoding();
    finish(*commands);

    const auto* values = static_cast<const std::uint32_t*>(words->contents());
    for (std::uint32_t at = 0; at < 16; ++at)
        EXPECT_EQ(values[at], at < 10 ? 1 + at * 10 : 0u);
    EXPECT_EQ(pixelAt(*texture, 0, 0), (Pixel{20, 64, 128, 255}));
    EXPECT_EQ(pixelAt(*texture, 1, 1), (Pixel{10, 64, 128, 255}));
}

// `lengthy` counts before its loop, `endless` in it; both exceed the budget for a stop at 0.
TEST_F(LibraryTest, endsLoopsAtTheirBudget) {
    const auto library = device->newLibrary(program);
    const auto texture = target(2, 2);
    for (const char* name : {"endless", "lengthy"}) {
        const auto state = fragmentPipeline(*library, name);
        for (std::uint32_t stop : {3125u, 0u}) {
            const float size = 4;
            const auto commands =
                render({.color = {.texture = texture.get(), .load = LoadAction::clear}},
                       [&](auto& encoder) {
                           encoder.setRenderPipelineState(*state);
                           encoder.setVertexBytes(&size, 4, 4);
                           encoder.setFragmentBytes(&stop, 4, 0);
                           encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
                       });
            EXPECT_EQ(commands.hitLoopBudget(), stop == 0) << name;
            EXPECT_EQ(pixelAt(*texture, 1, 1)[0], stop == 0 ? 0 : 255) << name;
        }
    }
}

// The packaged CPU driver has neither.
TEST_F(LibraryTest, namesWhatADeviceLacksWhereAPipelineIsMade) {
    const auto library = device->newLibrary(R"(
#include <metal_stdlib>
using namespace metal;
vertex float4 corner(uint v [[vertex_id]]) { return v; }
vertex float4 counted(uint v [[vertex_id]]) { return simd_sum(v); }
fragment float4 plain() { return 1; }
fragment float4 weights(float3 b [[barycentric_coord]]) { return b.x; }
)");
    const auto refusal = [&](const char* vertexName, const char* fragmentName) -> std::string {
        const auto vertex = library->newFunction(vertexName);
        const auto fragment = library->newFunction(fragmentName);
        try {
            device->newRenderPipelineState({.vertex = vertex.get(),
                                            .fragment = fragment.get(),
                                            .color = {.format = PixelFormat::rgba8Unorm}});
        } catch (const DeviceError& error) {
            const std::string what = error.what();
            return what.substr(what.find(" has no "));
        }
        return " has no reason to refuse.";
    };
    EXPECT_EQ(refusal("corner", "plain"), " has no reason to refuse.");
    if (device->info().isCPU) {
        EXPECT_EQ(refusal("corner", "weights"), " has no barycentric_coord.");
        EXPECT_EQ(refusal("counted", "plain"), " has no SIMD-groups in vertex functions.");
    }
}

TEST_F(LibraryTest, throwsTheCompilersText) {
    try {
        device->newLibrary("#line 3 \"shader.metal\"\nfragment float4 f() { return 1 +; }\n");
        FAIL() << "A broken program became a library.";
    } catch (const LibraryError& error) {
        EXPECT_NE(std::string(error.what()).find("shader.metal:3:"), std::string::npos);
        EXPECT_NE(std::string(error.what()).find("1 error generated."), std::string::npos);
    }
}

TEST(Capabilities, areNamedByTheFirstThatTheDeviceLacks) {
    constexpr std::uint32_t declaration = 2u << 16 | 17, shader = 1, int64 = 11, int64Atomics = 12;
    const std::vector<std::uint32_t> module{
        0x07230203,   0x10600,      0, 9, 0, declaration, shader, declaration, int64, declaration,
        int64Atomics, 3u << 16 | 14};
    const std::vector<std::uint32_t> all{int64, int64Atomics}, some{int64}, none;
    EXPECT_EQ(missingCapability(module, all), std::nullopt);
    EXPECT_EQ(missingCapability(module, some), "64-bit atomic operations");
    EXPECT_EQ(missingCapability(module, none), "64-bit integers");
}

} // namespace

} // namespace tarnwick::tests
