// Each optional feature of a device (DeviceFeatures.h), switched off: another way gives the same,
// or a sentence names it. Points are in PointsTests, reading of targets in ColorsTests, null
// descriptors in TextureShapeTests.
#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Layer.h"
#include "tests/TarnwickGPU/Gpu.h"
#include "tests/Thrown.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr const char* program = R"msl(
#include <metal_stdlib>
using namespace metal;
struct In { float4 at [[attribute(0)]]; };
vertex float4 corner(uint v [[vertex_id]]) {
    return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1);
}
vertex float4 placed(In in [[stage_in]]) { return in.at; }
fragment float4 tinted(constant float& red [[buffer(0)]], device float& green [[buffer(1)]],
                       texture2d<float> blue [[texture(0)]]) {
    return float4(red, green, blue.read(uint2(0)).x, 1);
}
struct Two { float4 first [[color(0)]], second [[color(1)]]; };
fragment Two both() { return {1, 1}; }
struct Sources { float4 a [[color(0), index(0)]], b [[color(0), index(1)]]; };
fragment Sources sources() { return {1, 1}; }
kernel void squared(device float* out [[buffer(0)]]) {
    simdgroup_float8x8 a, b;
    simdgroup_load(a, out);
    simdgroup_multiply(b, a, a);
    simdgroup_store(b, out);
}
kernel void sum(device uint* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    out[i] = simd_sum(i);
}
)msl";

class Features : public Gpu {
  protected:
    DeviceRecord& record() { return device->state().record; }

    std::unique_ptr<RenderPipelineState> made(const char* vertexName, const char* fragmentName,
                                              RenderPipelineDescriptor descriptor = {}) {
        if (!library)
            library = device->newLibrary(program);
        const auto vertex = library->newFunction(vertexName);
        const auto fragment = library->newFunction(fragmentName);
        descriptor.vertex = vertex.get();
        descriptor.fragment = fragment.get();
        if (descriptor.color.format == PixelFormat::invalid)
            descriptor.color.format = PixelFormat::rgba8Unorm;
        return device->newRenderPipelineState(descriptor);
    }

    // The end of the sentence, after the device's name.
    template <typename Make> std::string refusal(const Make& make) {
        const std::string text = thrownBy<DeviceError>(make), name = device->info().name;
        const std::size_t at = text.rfind(name);
        return at == text.npos ? text : text.substr(at + name.size());
    }

    std::unique_ptr<Library> library;
};

} // namespace

TEST_F(Features, areNamedByPipelinesThatNeedThem) {
    record().features.twoSources = false;
    EXPECT_EQ(refusal([&] {
                  made("corner", "sources",
                       {.color = {.format = PixelFormat::rgba8Unorm,
                                  .blends = true,
                                  .destinationRGB = BlendFactor::source1Color}});
              }),
              " does not blend two sources.");
    record().features.independentBlend = false;
    RenderPipelineDescriptor unlike{.color = {.format = PixelFormat::rgba8Unorm, .blends = true}};
    unlike.otherColors[0] = {.format = PixelFormat::rgba8Unorm};
    EXPECT_EQ(refusal([&] { made("corner", "both", unlike); }), " requires.");
    unlike.color.blends = false;
    EXPECT_TRUE(made("corner", "both", unlike));

    record().features.instanceRates = false;
    VertexDescriptor slow;
    slow.attributes[0] = {.format = VertexFormat::float4, .bufferIndex = 1};
    slow.layouts[1] = {.stride = 16, .step = StepFunction::perInstance, .stepRate = 2};
    EXPECT_EQ(refusal([&] { made("placed", "tinted", {.vertexDescriptor = &slow}); }),
              " has no step rates above 1.");

    record().features.groups.lanes = 4;
    const auto squared = library->newFunction("squared");
    EXPECT_EQ(refusal([&] { device->newComputePipelineState(*squared); }),
              " has SIMD-groups of 4 threads, and their matrices need 8.");
    const auto sum = library->newFunction("sum");
    EXPECT_TRUE(device->newComputePipelineState(*sum));
    record().features.groups.stages = 0;
    EXPECT_EQ(refusal([&] { device->newComputePipelineState(*sum); }),
              " has no SIMD-groups in kernels.");
    record().features.capabilities.clear();
    EXPECT_EQ(refusal([&] { device->newComputePipelineState(*sum); }), " has no SIMD-groups.");
}

TEST_F(Features, areAbsentObjectsWithoutASentence) {
    record().features.presents = false;
    EXPECT_FALSE(device->newLayer(nullptr));
    record().features.mirrorClamp = false;
    EXPECT_FALSE(device->newSamplerState({.rAddressMode = SamplerAddressMode::mirrorClampToEdge}));
    EXPECT_TRUE(device->newSamplerState({}));
    record().features.addresses = false;
    const auto buffer = device->newBuffer(16);
    ASSERT_TRUE(buffer);
    EXPECT_EQ(buffer->gpuAddress(), 0u);
}

TEST_F(Features, bindByPoolsWithoutPushDescriptors) {
    const auto texture = target(1, 1), blue = target(1, 1);
    const Pixel texel{51, 0, 0, 0};
    blue->replace({0, 0, 1, 1}, 0, texel.data(), 4);
    const auto green = device->newBuffer(4);
    const float red = 0.8f, half = 0.4f;
    std::memcpy(green->contents(), &half, sizeof half);
    for (const bool pushes : {true, false}) {
        if (!pushes)
            record().pushDescriptorSet = nullptr;
        const auto state = made("corner", "tinted");
        render({.color = {.texture = texture.get(), .load = LoadAction::clear}},
               [&](auto& encoder) {
                   encoder.setRenderPipelineState(*state);
                   encoder.setFragmentBytes(&red, sizeof red, 0);
                   encoder.setFragmentBuffer(*green, 0, 1);
                   encoder.setFragmentTexture(blue.get(), 0);
                   encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
               });
        EXPECT_EQ(pixelAt(*texture, 0, 0), (Pixel{204, 102, 51, 255})) << pushes;
    }
}

namespace {

constexpr std::size_t count = 7; // the bytes end in the middle of a word

constexpr const char* mixture = R"msl(
#include <metal_stdlib>
using namespace metal;
kernel void mix(device uchar* bytes [[buffer(0)]], device short* shorts [[buffer(1)]],
                device ulong* longs [[buffer(2)]], device half* halves [[buffer(3)]],
                uint i [[thread_position_in_grid]]) {
    bytes[i] = bytes[i] * 3 + 1;
    shorts[i] = shorts[i] / -7;
    longs[i] = longs[i] * 1000003ul / (i + 3);
    halves[i] = halves[i] * 1.5h;
}
)msl";

struct Types {
    bool int8, int16, int64, float16;
};

// SPIR-V 1.6, 3.31.
void forbid(std::vector<std::uint32_t>& capabilities, const Types& there) {
    const bool areSmall = there.int8 && there.int16 && there.float16;
    std::erase_if(capabilities, [&](std::uint32_t each) {
        const bool isStorage = each == 4433 || each == 4434 || each == 4448 || each == 4449;
        return (each == 39 && !there.int8) || (each == 22 && !there.int16) ||
               (each == 11 && !there.int64) || (each == 9 && !there.float16) ||
               (isStorage && !areSmall);
    });
}

} // namespace

// The layer refuses a module with a capability that is not there, so it has none of them.
TEST_F(Features, computeAlikeWithoutTypes) {
    const DeviceFeatures all = record().features;
    for (const Types& there : {Types{true, true, true, true}, Types{false, true, true, true},
                               Types{true, false, true, true}, Types{true, true, false, true},
                               Types{true, true, true, false}, Types{false, false, false, false}}) {
        DeviceFeatures& features = record().features = all;
        features.int8 &= there.int8;
        features.int16 &= there.int16;
        features.int64 &= there.int64;
        features.float16 &= there.float16;
        forbid(features.capabilities, there);
        const auto state =
            device->newComputePipelineState(*device->newLibrary(mixture)->newFunction("mix"));
        const auto bytes = device->newBuffer(count), shorts = device->newBuffer(count * 2),
                   longs = device->newBuffer(count * 8), halves = device->newBuffer(count * 2);
        auto* byte = static_cast<std::uint8_t*>(bytes->contents());
        auto* small = static_cast<std::int16_t*>(shorts->contents());
        auto* wide = static_cast<std::uint64_t*>(longs->contents());
        auto* half = static_cast<std::uint16_t*>(halves->contents());
        for (std::size_t i = 0; i < count; i++) {
            byte[i] = static_cast<std::uint8_t>(80 + i);
            small[i] = static_cast<std::int16_t>(30000 - 10000 * static_cast<int>(i));
            wide[i] = 0x123456789abcdefu * i;
            half[i] = static_cast<std::uint16_t>(0x4000 + 0x400 * i); // 2, 4, 8 ...
        }
        auto commands = queue->commandBuffer();
        auto encoder = commands->computeCommandEncoder();
        encoder->setComputePipelineState(*state);
        std::uint32_t index = 0;
        for (const auto* buffer : {&bytes, &shorts, &longs, &halves})
            encoder->setBuffer(**buffer, 0, index++);
        encoder->dispatchThreads({count, 1, 1}, {count, 1, 1});
        encoder->endEncoding();
        finish(*commands);
        for (std::size_t i = 0; i < count; i++) {
            EXPECT_EQ(byte[i], static_cast<std::uint8_t>((80 + i) * 3 + 1));
            EXPECT_EQ(small[i], (30000 - 10000 * static_cast<int>(i)) / -7);
            EXPECT_EQ(wide[i], 0x123456789abcdefu * i * 1000003u / (i + 3));
            EXPECT_EQ(half[i], 0x4200 + 0x400 * i); // 3, 6, 12 ...
        }
    }
}

} // namespace tarnwick::tests
