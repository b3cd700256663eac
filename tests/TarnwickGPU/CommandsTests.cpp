#include "TarnwickGPU/Device/DeviceState.h"
#include "tests/TarnwickGPU/Gpu.h"
#include "tests/TarnwickGPU/HeapCount.h"

#include <thread>

namespace tarnwick::tests {

namespace {

using namespace gpu;
using msl::ResourceKind;

// out[i] = in[i] * factor + grid for the threads of the grid, in groups of any size.
msl::EntryPoint scale() {
    return glsl(msl::Stage::kernel, "scale",
                "layout(scalar, binding = 0) buffer Values { uint values[]; };\n"
                "layout(scalar, binding = 1) uniform Factor { uint factor; };\n"
                "void main() {\n"
                "    uint id = gl_GlobalInvocationID.x;\n"
                "    if (id < grid.x) values[id] = values[id] * factor + grid.y + grid.z;\n"
                "}\n",
                {{.kind = ResourceKind::storageBuffer, .index = 0, .binding = 0, .isWritten = true},
                 {.kind = ResourceKind::uniformBuffer, .index = 3, .binding = 1, .size = 4}});
}

msl::EntryPoint showBytes(std::uint32_t size) {
    return glsl(msl::Stage::fragment, "showBytes",
                "layout(scalar, binding = 32) uniform Bytes { vec4 color; vec4 more; };\n"
                "layout(binding = 33) uniform texture2D image;\n"
                "layout(location = 0) out vec4 result;\n"
                "void main() { result = color + more + texelFetch(image, ivec2(0), 0); }\n",
                {{.kind = ResourceKind::uniformBuffer, .index = 2, .binding = 32, .size = size},
                 {.kind = ResourceKind::sampledTexture,
                  .index = 5,
                  .binding = 33,
                  .shape = msl::TextureShape::d2}});
}

TEST_F(Gpu, dispatchesExactlyTheGivenThreads) {
    const auto state = pipeline(scale());
    EXPECT_GE(state->maxTotalThreadsPerThreadgroup(), 128u);
    const auto buffer = device->newBuffer(64 * 4);
    auto* values = static_cast<std::uint32_t*>(buffer->contents());
    for (std::uint32_t at = 0; at < 64; ++at)
        values[at] = at;
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*state);
    encoder->setBuffer(*buffer, 0, 0);
    const std::uint32_t factors[]{3, 2};
    encoder->setBytes(&factors[0], 4, 3);
    encoder->dispatchThreads({50, 1, 1}, {16, 1, 1}); // values * 3 + 2
    encoder->setBytes(&factors[1], 4, 3);
    encoder->dispatchThreads({50, 1, 1}, {7, 1, 1}); // reads the stores of the first
    encoder->endEncoding();
    finish(*commands);
    for (std::uint32_t at = 0; at < 64; ++at)
        EXPECT_EQ(values[at], at < 50 ? (at * 3 + 2) * 2 + 2 : at);
}

TEST_F(Gpu, readsZerosBeyondTheBoundBytes) {
    const auto state = pipeline(wholeTarget(), showBytes(32));
    const auto texture = target(2, 2);
    const std::array<float, 4> color{1, 0, 1, 0};
    for (bool binds : {false, true}) {
        const std::array<float, 8> noise{9, 9, 9, 9, 9, 9, 9, 9};
        render({.color = {.texture = texture.get(), .load = LoadAction::clear}},
               [&](auto& encoder) {
                   encoder.setRenderPipelineState(*state);
                   encoder.setFragmentBytes(noise.data(), 32, 1); // before the color in memory
                   if (binds)
                       encoder.setFragmentBytes(color.data(), 16, 2);
                   encoder.setFragmentBytes(noise.data(), 32, 3);
                   encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
               });
        EXPECT_EQ(pixelAt(*texture, 1, 1), binds ? (Pixel{255, 0, 255, 0}) : (Pixel{0, 0, 0, 0}));
    }
}

// Textures of other shapes, textures of integers, and resources to store to.
TEST_F(Gpu, drawsWithEveryKindOfResourceUnbound) {
    using msl::TextureShape;
    const auto fragment = glsl(
        msl::Stage::fragment, "unbound",
        "layout(binding = 32) uniform texture3D volume;\n"
        "layout(binding = 33) uniform textureCube cube;\n"
        "layout(binding = 34) uniform utexture2D counts;\n"
        "layout(binding = 35, rgba8) uniform writeonly image2D picture;\n"
        "layout(scalar, binding = 36) buffer Words { uint words[]; };\n"
        "layout(binding = 37) uniform sampler how;\n"
        "layout(location = 0) out vec4 result;\n"
        "void main() {\n"
        "    imageStore(picture, ivec2(0), vec4(1));\n"
        "    words[5] = 7;\n"
        "    result = texelFetch(volume, ivec3(0), 0) + texture(samplerCube(cube, how), vec3(1)) "
        "+\n"
        "             vec4(texelFetch(counts, ivec2(0), 0)) + vec4(textureSize(volume, 0).x);\n"
        "}\n",
        {{.kind = ResourceKind::sampledTexture,
          .index = 0,
          .binding = 32,
          .shape = TextureShape::d3},
         {.kind = ResourceKind::sampledTexture,
          .index = 1,
          .binding = 33,
          .shape = TextureShape::cube},
         {.kind = ResourceKind::sampledTexture,
          .index = 2,
          .binding = 34,
          .shape = TextureShape::d2,
          .component = msl::TextureComponent::uint_},
         {.kind = ResourceKind::storageTexture,
          .index = 3,
          .binding = 35,
          .isWritten = true,
          .shape = TextureShape::d2},
         {.kind = ResourceKind::storageBuffer, .index = 0, .binding = 36, .isWritten = true},
         {.kind = ResourceKind::sampler, .index = 0, .binding = 37}});
    const auto texture = target(2, 2);
    draw(*pipeline(wholeTarget(), fragment), *texture);
    EXPECT_EQ(pixelAt(*texture, 1, 1), (Pixel{0, 0, 0, 0}));
}

// The sum of `buffers` uniform buffers' and `textures` textures' first colours.
msl::EntryPoint sum(std::uint32_t buffers, std::uint32_t textures) {
    std::string body = "layout(location = 0) out vec4 result;\n", terms = "vec4(0)";
    std::vector<msl::Resource> resources;
    for (std::uint32_t at = 0; at < buffers + textures; ++at) {
        const bool isBuffer = at < buffers;
        const std::string number = std::to_string(at);
        body += "layout(binding = " + std::to_string(32 + at) + ") uniform " +
                (isBuffer ? "B" + number + " { vec4 b" + number + "; };\n"
                          : "texture2D t" + number + ";\n");
        terms += isBuffer ? " + b" + number : " + texelFetch(t" + number + ", ivec2(0), 0)";
        resources.push_back(
            {.kind = isBuffer ? ResourceKind::uniformBuffer : ResourceKind::sampledTexture,
             .index = isBuffer ? at : at - buffers,
             .binding = 32 + at,
             .size = isBuffer ? 16u : 0u,
             .shape = isBuffer ? msl::TextureShape::none : msl::TextureShape::d2});
    }
    return glsl(msl::Stage::fragment, "sum", body + "void main() { result = " + terms + "; }",
                resources);
}

TEST_F(Gpu, bindsMoreThanItPushesAndRefusesMoreThanTheDeviceHas) {
    const auto state = pipeline(wholeTarget(), sum(12, 31));
    const auto texture = target(1, 1);
    const auto image = device->newTexture({.format = PixelFormat::rgba8Unorm});
    const Pixel texel{0, 4, 0, 0};
    image->replace({0, 0, 1, 1}, 0, texel.data(), 4);
    render({.color = {.texture = texture.get(), .load = LoadAction::clear}}, [&](auto& encoder) {
        encoder.setRenderPipelineState(*state);
        for (std::uint32_t index = 0; index < 31; ++index)
            encoder.setFragmentTexture(image.get(), index);
        for (float draw = 0; draw < 100; ++draw) { // more sets than one pool has
            const std::array<float, 4> color{2 / 255.0f, 0, draw / 255 / 12, 0};
            for (std::uint32_t index = 0; index < 12; ++index)
                encoder.setFragmentBytes(color.data(), 16, index);
            encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
        }
    });
    EXPECT_EQ(pixelAt(*texture, 0, 0), (Pixel{24, 124, 99, 0}));

    if (device->state().record.limits.maxPerStageDescriptorUniformBuffers < 31) {
        EXPECT_THROW(pipeline(wholeTarget(), sum(31, 0)), DeviceError);
    }
}

// Each step reads the previous step's picture and the kernel's count.
TEST_F(Gpu, ordersEncodersAndCommandBuffersBySharedResources) {
    const auto add = glsl(msl::Stage::fragment, "add",
                          "layout(scalar, binding = 32) readonly buffer Count { uint count[]; };\n"
                          "layout(binding = 33) uniform texture2D last;\n"
                          "layout(location = 0) out vec4 color;\n"
                          "void main() {\n"
                          "    color = texelFetch(last, ivec2(gl_FragCoord.xy), 0) + vec4(1);\n"
                          "    color.y = float(count[0]);\n"
                          "}\n",
                          {{.kind = ResourceKind::storageBuffer, .index = 0, .binding = 32},
                           {.kind = ResourceKind::sampledTexture,
                            .index = 0,
                            .binding = 33,
                            .shape = msl::TextureShape::d2}});
    const auto kernel = pipeline(scale());
    const auto state =
        pipeline(wholeTarget(), add, {.color = {.format = PixelFormat::rgba32Float}});
    const std::unique_ptr<Texture> pictures[]{target(4, 4, PixelFormat::rgba32Float),
                                              target(4, 4, PixelFormat::rgba32Float)};
    const auto copy = target(4, 4, PixelFormat::rgba32Float);
    const auto count = device->newBuffer(4, StorageMode::private_);
    const std::uint32_t one = 1;
    std::uint32_t step = 0;
    std::optional<CommandBuffer> commands;
    for (int frame = 0; frame < 100; ++frame) { // more than may be in flight
        commands = queue->commandBuffer();
        for (int pass = 0; pass < 2; ++pass, ++step) {
            auto compute = commands->computeCommandEncoder();
            compute->setComputePipelineState(*kernel);
            compute->setBuffer(*count, 0, 0);
            compute->setBytes(&one, 4, 3);
            compute->dispatchThreads({1, 1, 1}, {1, 1, 1}); // count + 2
            compute->endEncoding();
            auto encoder = commands->renderCommandEncoder(
                {.color = {.texture = pictures[step % 2].get(), .load = LoadAction::clear}});
            encoder->setRenderPipelineState(*state);
            encoder->setFragmentBuffer(*count, 0, 0);
            encoder->setFragmentTexture(pictures[1 - step % 2].get(), 0);
            encoder->drawPrimitives(PrimitiveType::triangle, 0, 3);
            encoder->endEncoding();
        }
        auto blit = commands->blitCommandEncoder();
        blit->copy(*pictures[1], {0, 0, 4, 2}, *copy, 0, 2);
        blit->endEncoding();
        commands->commit();
    }
    commands->waitUntilCompleted();
    std::array<float, 4> pixel{};
    copy->getBytes(pixel.data(), 16, {3, 3, 1, 1}, 0);
    EXPECT_EQ(pixel, (std::array<float, 4>{200, 400, 200, 200}));
    copy->getBytes(pixel.data(), 16, {3, 1, 1, 1}, 0);
    EXPECT_EQ(pixel, (std::array<float, 4>{}));
}

TEST_F(Gpu, reportsLoopsThatUseUpTheirBudget) {
    const auto fragment =
        glsl(msl::Stage::fragment, "spin",
             "layout(scalar, binding = 32) uniform Turns { uint turns; };\n"
             "layout(scalar, binding = 33) buffer Report { uint report; };\n"
             "layout(location = 0) out vec4 color;\n"
             "void main() {\n"
             "    color = vec4(1);\n"
             "    for (uint turn = 0; turn != turns; ++turn)\n"
             "        if (turn >= loopBudget) { report = 1; return; }\n"
             "}\n",
             {{.kind = ResourceKind::uniformBuffer, .index = 0, .binding = 32, .size = 4},
              {.kind = ResourceKind::loopReport, .binding = 33, .isWritten = true}});
    const auto state = pipeline(wholeTarget(), fragment);
    const auto texture = target(2, 2);
    for (std::uint32_t turns : {1000u, ~0u, 1000u}) {
        const auto commands = render(
            {.color = {.texture = texture.get(), .load = LoadAction::clear}}, [&](auto& encoder) {
                encoder.setRenderPipelineState(*state);
                encoder.setFragmentBytes(&turns, 4, 0);
                for (int repeat = 0; repeat < 3; ++repeat)
                    encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
            });
        EXPECT_EQ(commands.hitLoopBudget(), turns == ~0u);
    }
}

TEST_F(Gpu, allocatesNothingOnceWarm) {
    withoutValidation(); // the validation layer allocates
    const auto state = pipeline(wholeTarget(), showBytes(64));
    const auto kernel = pipeline(scale());
    const auto texture = target(16, 16);
    const auto buffer = device->newBuffer(64, StorageMode::private_);
    const std::array<float, 8> bytes{};
    auto frame = [&] {
        auto commands = queue->commandBuffer();
        auto compute = commands->computeCommandEncoder();
        compute->setComputePipelineState(*kernel);
        compute->setBuffer(*buffer, 0, 0);
        compute->setBytes(bytes.data(), 4, 3);
        compute->dispatchThreads({16, 1, 1}, {8, 1, 1});
        compute->endEncoding();
        auto encoder = commands->renderCommandEncoder(
            {.color = {.texture = texture.get(), .load = LoadAction::clear}});
        encoder->setRenderPipelineState(*state);
        encoder->setFragmentBytes(bytes.data(), 32, 2);
        encoder->setFragmentTexture(nullptr, 5);
        encoder->drawPrimitives(PrimitiveType::triangle, 0, 3);
        encoder->endEncoding();
        finish(*commands);
    };
    EXPECT_EQ(heapCountOnceWarm(frame), 0u);
}

TEST_F(Gpu, mayBeSharedByThreadsWithAQueueEach) {
    const auto state = pipeline(scale());
    auto work = [&] {
        const auto own = device->newCommandQueue();
        const std::uint32_t one = 1;
        for (int job = 0; job < 50; ++job) {
            const auto buffer = device->newBuffer(4);
            auto commands = own->commandBuffer();
            auto encoder = commands->computeCommandEncoder();
            encoder->setComputePipelineState(*state);
            encoder->setBuffer(*buffer, 0, 0);
            encoder->setBytes(&one, 4, 3);
            encoder->dispatchThreads({1, 1, 1}, {1, 1, 1});
            encoder->endEncoding();
            finish(*commands);
            EXPECT_EQ(*static_cast<std::uint32_t*>(buffer->contents()), 2u);
        }
    };
    std::thread first(work), second(work);
    first.join();
    second.join();
}

} // namespace

} // namespace tarnwick::tests
