// Several colour targets, blending, and colours that a fragment function reads.
#include "TarnwickGPU/Device/DeviceState.h"
#include "tests/TarnwickGPU/Gpu.h"

namespace tarnwick::tests {

namespace {

using namespace gpu;

msl::EntryPoint fragment(const std::string& body, std::uint32_t colors = 1,
                         std::vector<msl::Resource> resources = {}) {
    auto made = glsl(msl::Stage::fragment, "colours", "layout(location = 0) in vec2 at;\n" + body,
                     std::move(resources));
    made.colorAttachments = colors;
    return made;
}

template <typename Value> std::array<Value, 4> valueAt(const Texture& texture) {
    std::array<Value, 4> value{};
    texture.getBytes(value.data(), sizeof value, {1, 2, 1, 1}, 0);
    return value;
}

// Attachments 0, 2 and 5, each with a format, a load action, blending and a mask of its own. What
// the function gives to color(1) has no target; nothing is given to color(5).
TEST_F(Gpu, drawsIntoSeveralTargetsEachInItsOwnWay) {
    const auto first = target(4, 4), third = target(4, 4, PixelFormat::rgba32Uint),
               sixth = target(4, 4, PixelFormat::rgba32Float);
    RenderPipelineDescriptor descriptor{.color = {.format = PixelFormat::rgba8Unorm,
                                                  .blends = true,
                                                  .rgbOperation = BlendOperation::reverseSubtract,
                                                  .alphaOperation = BlendOperation::max,
                                                  .sourceRGB = BlendFactor::blendColor,
                                                  .destinationRGB = BlendFactor::one,
                                                  .writeMask = {.green = false}}};
    descriptor.otherColors[1] = {.format = PixelFormat::rgba32Uint};
    descriptor.otherColors[4] = {.format = PixelFormat::rgba32Float};
    const auto state = pipeline(wholeTarget(),
                                fragment("layout(location = 0) out vec4 a;\n"
                                         "layout(location = 1) out vec4 b;\n"
                                         "layout(location = 2) out uvec4 c;\n"
                                         "void main() { a = vec4(0.4); b = vec4(1);\n"
                                         "    c = uvec4(7, 8, 9, 1u << 31); }\n",
                                         7),
                                descriptor);
    RenderPassDescriptor pass{
        .color = {.texture = first.get(), .load = LoadAction::clear, .clear = {1, 1, 1, 0.2}}};
    pass.otherColors[1] = {.texture = third.get(), .load = LoadAction::clear};
    pass.otherColors[4] = {
        .texture = sixth.get(), .load = LoadAction::clear, .clear = {1, 2, 3, 4}};
    render(pass, [&](auto& encoder) {
        encoder.setRenderPipelineState(*state);
        encoder.setBlendColor(0.5f, 0.5f, 0.5f, 1);
        encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
    });
    EXPECT_EQ(pixelAt(*first, 1, 2), (Pixel{204, 255, 204, 102}));
    EXPECT_EQ(valueAt<std::uint32_t>(*third), (std::array<std::uint32_t, 4>{7, 8, 9, 1u << 31}));
    EXPECT_EQ(valueAt<float>(*sixth), (std::array<float, 4>{1, 2, 3, 4}));
}

// The target's part is the second source, which no target keeps.
TEST_F(Gpu, blendsTwoSources) {
    if (!device->state().record.features.twoSources)
        GTEST_SKIP() << "The device does not blend two sources.";
    const auto texture = target(4, 4);
    const auto paints =
        fragment("layout(location = 0, index = 0) out vec4 a;\n"
                 "layout(location = 0, index = 1) out vec4 b;\n"
                 "void main() { a = vec4(0.2, 0.2, 0.2, 0); b = vec4(0, 0.5, 1, 1); }\n");
    for (const bool blends : {true, false}) {
        const auto state =
            pipeline(wholeTarget(), paints,
                     {.color = {.format = PixelFormat::rgba8Unorm,
                                .blends = blends,
                                .destinationRGB = BlendFactor::source1Color,
                                .destinationAlpha = BlendFactor::oneMinusSource1Alpha}});
        render({.color = {.texture = texture.get(),
                          .load = LoadAction::clear,
                          .clear = {0.6, 0.6, 0.6, 1}}},
               [&](auto& encoder) {
                   encoder.setRenderPipelineState(*state);
                   encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
               });
        EXPECT_EQ(pixelAt(*texture, 1, 2),
                  blends ? (Pixel{51, 128, 204, 0}) : (Pixel{51, 51, 51, 0}));
    }
}

// Reads color(0) and color(1), and swaps them with an addition.
msl::EntryPoint swaps() {
    return fragment("layout(binding = 32) uniform texture2D first;\n"
                    "layout(binding = 33) uniform utexture2D second;\n"
                    "layout(location = 0) out vec4 a;\nlayout(location = 1) out uvec4 b;\n"
                    "void main() { ivec2 at = ivec2(gl_FragCoord.xy);\n"
                    "    a = vec4(texelFetch(second, at, 0)) + 1;\n"
                    "    b = uvec4(texelFetch(first, at, 0)) + 10; }\n",
                    3,
                    {{.kind = msl::ResourceKind::colorInput,
                      .index = 0,
                      .binding = 32,
                      .shape = msl::TextureShape::d2,
                      .component = msl::TextureComponent::float_},
                     {.kind = msl::ResourceKind::colorInput,
                      .index = 1,
                      .binding = 33,
                      .shape = msl::TextureShape::d2,
                      .component = msl::TextureComponent::uint_}});
}

// The target itself where the device can show it, and copies of it.
TEST_F(Gpu, showsTheColoursSoFarToLaterDraws) {
    for (const bool copies : {false, true}) {
        bool& readsTargets = device->state().record.features.readsTargets;
        const bool couldRead = std::exchange(readsTargets, readsTargets && !copies);
        const auto first = target(4, 4, PixelFormat::rgba32Float),
                   second = target(4, 4, PixelFormat::rgba32Uint);
        RenderPipelineDescriptor descriptor{.color = {.format = PixelFormat::rgba32Float}};
        descriptor.otherColors[0] = {.format = PixelFormat::rgba32Uint};
        const auto state = pipeline(wholeTarget(), swaps(), descriptor);
        RenderPassDescriptor pass{
            .color = {.texture = first.get(), .load = LoadAction::clear, .clear = {5, 6, 7, 8}}};
        pass.otherColors[0] = {
            .texture = second.get(), .load = LoadAction::clear, .clear = {50, 60, 70, 80}};
        for (const bool isFirst : {true, false}) {
            render(pass, [&](auto& encoder) {
                encoder.setRenderPipelineState(*state);
                for (int draw = 0; draw < (isFirst ? 2 : 1); ++draw)
                    encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
            });
            pass.color.load = pass.otherColors[0].load = LoadAction::load;
            if (isFirst) { // 5, 50 becomes 51, 15, then 16, 61
                EXPECT_EQ(valueAt<float>(*first), (std::array<float, 4>{16, 17, 18, 19}));
                EXPECT_EQ(valueAt<std::uint32_t>(*second),
                          (std::array<std::uint32_t, 4>{61, 71, 81, 91}));
            }
        }
        EXPECT_EQ(valueAt<float>(*first), (std::array<float, 4>{62, 72, 82, 92}));
        EXPECT_EQ(valueAt<std::uint32_t>(*second), (std::array<std::uint32_t, 4>{26, 27, 28, 29}));
        readsTargets = couldRead;
    }
}

// On the packaged driver a draw that reads the target itself sees its own earlier triangles.
TEST_F(Gpu, showsTheColoursOfTheSameDrawInOrder) {
    if (!device->info().isCPU || !device->state().record.features.readsTargets)
        GTEST_SKIP() << "The device does not order the fragments of a draw that reads its target.";
    const auto texture = target(64, 64, PixelFormat::rgba32Float);
    const auto state =
        pipeline(wholeTarget(),
                 fragment("layout(binding = 32) uniform texture2D first;\n"
                          "layout(location = 0) out vec4 a;\n"
                          "void main() { a = texelFetch(first, ivec2(gl_FragCoord.xy), 0)\n"
                          "    * 2 + 1; }\n",
                          1,
                          {{.kind = msl::ResourceKind::colorInput,
                            .binding = 32,
                            .shape = msl::TextureShape::d2,
                            .component = msl::TextureComponent::float_}}),
                 {.color = {.format = PixelFormat::rgba32Float}});
    render({.color = {.texture = texture.get(), .load = LoadAction::clear, .clear = {0, 0, 0, 0}}},
           [&](auto& encoder) {
               encoder.setRenderPipelineState(*state);
               encoder.drawPrimitives(PrimitiveType::triangle, 0, 3, 7);
           });
    std::vector<std::array<float, 4>> all(64 * 64);
    texture->getBytes(all.data(), 64 * sizeof all[0], {0, 0, 64, 64}, 0);
    for (const auto& each : all)
        ASSERT_EQ(each, (std::array<float, 4>{127, 127, 127, 127}));
}

TEST_F(Gpu, refusesColoursThatTheTargetsDoNotHave) {
    const auto reason = [&](const msl::EntryPoint& function, const RenderPipelineDescriptor& how) {
        try {
            pipeline(wholeTarget(), function, how);
        } catch (const DeviceError& error) {
            const std::string what = error.what();
            return what.substr(what.find(": ") + 2);
        }
        return std::string();
    };
    RenderPipelineDescriptor two{.color = {.format = PixelFormat::rgba32Float}};
    two.otherColors[0] = {.format = PixelFormat::rgba32Float};
    EXPECT_EQ(reason(swaps(), two),
              "colours gives integers, and the target of color(1) holds fractions.");
    EXPECT_EQ(reason(swaps(), {.color = {.format = PixelFormat::rgba32Float}, .sampleCount = 4}),
              "colours takes the colour so far, and the target has 4 samples.");
    two.otherColors[0].blends = true;
    two.otherColors[0].sourceRGB = BlendFactor::source1Alpha;
    const auto plain = fragment("layout(location = 0) out vec4 a;\nvoid main() { a = vec4(1); }\n");
    EXPECT_EQ(reason(plain, two), "two sources are blended into the target of color(0) alone.");
}

} // namespace

} // namespace tarnwick::tests
