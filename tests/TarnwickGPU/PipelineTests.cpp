#include "TarnwickMSL/SamplerBits.h"
#include "tests/TarnwickGPU/Gpu.h"

#include <cmath>

namespace tarnwick::tests {

namespace {

using namespace gpu;

msl::EntryPoint paint(const std::string& color) {
    return glsl(msl::Stage::fragment, "paint",
                "layout(location = 0) in vec2 at;\n"
                "layout(location = 0) out vec4 color;\n"
                "void main() { color = " +
                    color + "; }\n");
}

TEST_F(Gpu, drawsWithYUpAndPixelsFromTheUpperLeft) {
    const auto texture = target(4, 8);
    // Red counts columns, green rows from the top as `at` has them, blue as gl_FragCoord has them.
    draw(*pipeline(wholeTarget(), paint("vec4(at.x, at.y, gl_FragCoord.y / 8, gl_FrontFacing)")),
         *texture);
    for (std::uint32_t y = 0; y < 8; ++y)
        for (std::uint32_t x = 0; x < 4; ++x) {
            const Pixel pixel = pixelAt(*texture, x, y);
            EXPECT_NEAR(pixel[0], 255 * (x + 0.5) / 4, 1);
            EXPECT_NEAR(pixel[1], 255 * (y + 0.5) / 8, 1);
            EXPECT_NEAR(pixel[2], 255 * (y + 0.5) / 8, 1);
            EXPECT_EQ(pixel[3], 0); // lower left, lower right, upper left: counterclockwise
        }
}

TEST_F(Gpu, blendsAndKeepsToViewportAndScissor) {
    const auto texture = target(8, 8);
    const auto state = pipeline(wholeTarget(), paint("vec4(at, 0.25, 0.5)"),
                                {.color = {.format = PixelFormat::rgba8Unorm,
                                           .blends = true,
                                           .sourceRGB = BlendFactor::sourceAlpha,
                                           .destinationRGB = BlendFactor::oneMinusSourceAlpha,
                                           .sourceAlpha = BlendFactor::one,
                                           .destinationAlpha = BlendFactor::one}});
    render(
        {.color = {.texture = texture.get(), .load = LoadAction::clear, .clear = {1, 1, 1, 0.25}}},
        [&](auto& encoder) {
            encoder.setRenderPipelineState(*state);
            encoder.setViewport({.originX = 4, .originY = 2, .width = 4, .height = 4});
            encoder.setScissorRect({.x = 0, .y = 2, .width = 6, .height = 1});
            encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
        });
    const Pixel pixel = pixelAt(*texture, 4, 2); // `at` is 1/8, 1/8 there
    EXPECT_NEAR(pixel[0], 255 * (0.5 / 8 + 0.5), 1);
    EXPECT_NEAR(pixel[1], 255 * (0.5 / 8 + 0.5), 1);
    EXPECT_NEAR(pixel[2], 255 * 0.625, 1);
    EXPECT_NEAR(pixel[3], 255 * 0.75, 1);
    for (auto [x, y] : {std::pair{3u, 2u}, {6u, 2u}, {4u, 1u}, {4u, 3u}})
        EXPECT_EQ(pixelAt(*texture, x, y), (Pixel{255, 255, 255, 64}));
}

TEST_F(Gpu, ignoresColoursLayersAndViewportsThatNoPassHas) {
    const auto texture = target(4, 4);
    const msl::EntryPoint manyColours =
        glsl(msl::Stage::fragment, "many",
             "layout(location = 0) out vec4 color;\nlayout(location = 3) out vec4 other;\n"
             "void main() { color = vec4(1, 0, 0, 1); other = vec4(1); }\n");
    const msl::EntryPoint layered =
        glsl(msl::Stage::vertex, "layered",
             "#extension GL_ARB_shader_viewport_layer_array : require\n"
             "void main() { gl_Position = vec4((gl_VertexIndex & 1) * 4 - 1,"
             " (gl_VertexIndex >> 1) * 4 - 1, 0, 1); gl_Layer = 9999; gl_ViewportIndex = 7; }\n");
    draw(*pipeline(layered, manyColours), *texture);
    EXPECT_EQ(pixelAt(*texture, 1, 1), (Pixel{255, 0, 0, 255}));
    const msl::EntryPoint otherColour =
        glsl(msl::Stage::fragment, "other",
             "layout(location = 1) out vec4 color;\nvoid main() { color = vec4(1); }\n");
    EXPECT_TRUE(pipeline(wholeTarget(), otherColour));
}

TEST_F(Gpu, refusesFunctionsThatDoNotFitEachOther) {
    const auto reason = [&](const msl::EntryPoint& vertex, const msl::EntryPoint& fragment) {
        try {
            pipeline(vertex, fragment);
        } catch (const DeviceError& error) {
            const std::string what = error.what();
            return what.substr(what.find(": ") + 2);
        }
        return std::string();
    };
    const auto takes = [](const std::string& type) {
        return glsl(msl::Stage::fragment, "taker",
                    "layout(location = 0) in flat " + type +
                        " at;\nlayout(location = 0) out vec4 color;\n"
                        "void main() { color = vec4(at.x); }\n");
    };
    const std::string given = "taker takes a value that wholeTarget does not give, or gives as "
                              "another type.";
    EXPECT_EQ(reason(wholeTarget(), takes("vec2")), "");
    EXPECT_EQ(reason(wholeTarget(), takes("ivec2")), given);
    EXPECT_EQ(reason(wholeTarget(), takes("vec3")), given);
    EXPECT_EQ(reason(glsl(msl::Stage::vertex, "empty", "void main() {}"), takes("vec2")),
              "empty gives no position.");
    EXPECT_EQ(reason(wholeTarget(), wholeTarget()), "wholeTarget is no fragment function.");
    EXPECT_THROW(pipeline(wholeTarget()), DeviceError);
}

TEST_F(Gpu, testsDepthAndResolvesFourSamples) {
    const RenderPipelineDescriptor descriptor{.color = {.format = PixelFormat::rgba8Unorm},
                                              .depthFormat = PixelFormat::depth32Float,
                                              .sampleCount = 4};
    // Four triangles over all of the target, one depth and colour each; the nearest is the third.
    const auto vertex = glsl(msl::Stage::vertex, "layers",
                             "layout(location = 0) out vec2 at;\n"
                             "void main() {\n"
                             "    const float depths[] = {0.5, 0.75, 0.125, 0.25};\n"
                             "    int corner = gl_VertexIndex % 3, layer = gl_VertexIndex / 3;\n"
                             "    gl_Position = vec4(corner == 1 ? 3 : -1, corner == 2 ? 3 : -1,\n"
                             "                       depths[layer], 1);\n"
                             "    at = vec2(layer / 4.0, gl_Position.x);\n"
                             "}\n");
    const auto state =
        pipeline(vertex, paint("vec4(at.x, at.y > -0.75 ? 1 : 0, 0, 1)"), descriptor);
    const auto depthState =
        device->newDepthStencilState({.depthCompare = CompareFunction::less, .depthWrites = true});
    const auto resolved = target(4, 4);
    auto multisample = [&](PixelFormat format) {
        return device->newTexture({.type = TextureType::type2DMultisample,
                                   .format = format,
                                   .width = 4,
                                   .height = 4,
                                   .sampleCount = 4,
                                   .usage = {.shaderRead = false, .renderTarget = true},
                                   .storage = StorageMode::private_});
    };
    const auto color = multisample(PixelFormat::rgba8Unorm);
    const auto depth = multisample(PixelFormat::depth32Float);
    auto commands = queue->commandBuffer();
    for (int pass = 0; pass < 2; ++pass) { // the second one enters the targets without their rest
        auto encoder =
            commands->renderCommandEncoder({.color = {.texture = color.get(),
                                                      .resolveTexture = resolved.get(),
                                                      .load = LoadAction::clear,
                                                      .store = StoreAction::multisampleResolve},
                                            .depth = {.texture = depth.get()}});
        encoder->setRenderPipelineState(*state);
        encoder->setDepthStencilState(*depthState);
        encoder->drawPrimitives(PrimitiveType::triangle, 0, 12);
        encoder->endEncoding();
    }
    finish(*commands);
    EXPECT_EQ(pixelAt(*resolved, 2, 2), (Pixel{128, 255, 0, 255}));
}

// A clockwise triangle over the left half: one sampled column is covered in part.
TEST_F(Gpu, facesClockwiseTrianglesToTheFrontAndDrawsPoints) {
    const auto vertex = glsl(msl::Stage::vertex, "corners",
                             "layout(location = 0) out vec2 at;\n"
                             "void main() {\n"
                             "    const vec2 corners[] = {{-1, -1}, {-1, 3}, {3, -1}};\n"
                             "    gl_Position = vec4(corners[gl_VertexIndex % 3], 0, 1);\n"
                             "    if (gl_VertexIndex >= 3) gl_Position = vec4(-0.25, 0.75, 0, 1);\n"
                             "    gl_PointSize = 2; at = vec2(0);\n"
                             "}\n");
    const auto texture = target(8, 8);
    draw(*pipeline(vertex, paint("vec4(gl_FrontFacing, 0, 0, 1)")), *texture);
    EXPECT_EQ(pixelAt(*texture, 5, 5), (Pixel{255, 0, 0, 255}));

    const auto points =
        pipeline(vertex, paint("vec4(0, gl_PointCoord, 1)"),
                 {.color = {.format = PixelFormat::rgba8Unorm}, .topology = TopologyClass::point});
    render({.color = {.texture = texture.get(), .load = LoadAction::load}}, [&](auto& encoder) {
        encoder.setRenderPipelineState(*points);
        encoder.drawPrimitives(PrimitiveType::point, 3, 1);
    });
    // Its centre is 3 pixels from the left and 1 from the top; point coordinates have y down.
    EXPECT_EQ(pixelAt(*texture, 5, 5), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(*texture, 2, 0), (Pixel{0, 64, 64, 255}));
    EXPECT_EQ(pixelAt(*texture, 3, 1), (Pixel{0, 191, 191, 255}));
}

// Bits of a sampler as SamplerBits.h lays them out.
std::uint64_t bits(msl::SamplerAddress address, msl::SamplerFilter filter) {
    const auto a = static_cast<std::uint64_t>(address);
    const auto f = static_cast<std::uint64_t>(filter);
    return a << 1 | a << 4 | a << 7 | f << 10 | f << 12 | 0xffffull << 41;
}

TEST_F(Gpu, samplesByTheBitsOfTheSampler) {
    const auto texture = device->newTexture({.format = PixelFormat::r8Unorm, .width = 4});
    const std::array<std::uint8_t, 4> texels{40, 80, 120, 160};
    texture->replace({0, 0, 4, 1}, 0, texels.data(), 4);
    struct Row {
        msl::SamplerAddress address;
        msl::SamplerFilter filter;
        const char* at;
        int expected;
    };
    using enum msl::SamplerAddress;
    constexpr auto nearest = msl::SamplerFilter::nearest, linear = msl::SamplerFilter::linear;
    const Row rows[]{{clampToEdge, nearest, "1.6", 160}, {clampToZero, nearest, "1.6", 0},
                     {repeat, nearest, "1.4", 80},       {mirroredRepeat, nearest, "1.4", 120},
                     {clampToEdge, linear, "0.25", 60},  {repeat, linear, "1.0", 100},
                     {clampToZero, linear, "1.0", 80},   {clampToEdge, nearest, "0.24", 40}};
    const auto result = target(1, 1);
    for (const Row& row : rows) {
        const auto fragment = glsl(msl::Stage::fragment, "sample",
                                   "layout(binding = 32) uniform texture2D image;\n"
                                   "layout(binding = 33) uniform sampler how;\n"
                                   "layout(location = 0) out vec4 color;\n"
                                   "void main() { color = texture(sampler2D(image, how), vec2(" +
                                       std::string(row.at) + ", 0.5)); }\n",
                                   {{.kind = msl::ResourceKind::sampledTexture,
                                     .binding = 32,
                                     .shape = msl::TextureShape::d2},
                                    {.kind = msl::ResourceKind::constantSampler,
                                     .binding = 33,
                                     .samplerState = bits(row.address, row.filter)}});
        draw(*pipeline(wholeTarget(), fragment), *result, texture.get());
        EXPECT_NEAR(pixelAt(*result, 0, 0)[0], row.expected, 1) << row.at;
    }
}

} // namespace

} // namespace tarnwick::tests
