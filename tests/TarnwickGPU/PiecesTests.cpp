// Work in pieces against the same work in one submission.
#include "TarnwickGPU/Device/DeviceState.h"
#include "tests/TarnwickGPU/Gpu.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <numeric>

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr std::uint32_t width = 150, height = 70; // neither is a multiple of a tile

const char* const program = R"msl(
#include <metal_stdlib>
using namespace metal;
struct Out { float4 position [[position]]; float2 at; uint id [[flat]]; };
struct Dot { float4 position [[position]]; float size [[point_size]]; uint id [[flat]]; };

vertex Out whole_vertex(uint id [[vertex_id]]) {
    float2 corner = float2(id & 1, id >> 1);
    return {float4(corner * 4 - 1, 0, 1), corner * 2, id};
}
fragment float4 edges_fragment(Out in [[stage_in]], texture2d<float> before [[texture(0)]]) {
    float wave = sin(in.at.x * 40) * cos(in.at.y * 31);
    float4 earlier = before.read(uint2(in.position.xy) / 2);
    return float4(fwidth(wave), dfdx(wave), wave * wave, 0.5) + earlier * 0.25;
}

// Triangles and points over the picture, at places that their number gives.
float2 place(uint id) {
    uint a = id * 2654435761u, b = (id + 7u) * 2246822519u;
    return float2(a >> 16, b >> 16) / 32768 - 1;
}
vertex Out triangle_vertex(uint id [[vertex_id]], uint instance [[instance_id]]) {
    float2 corner = float2(id % 3 == 1, id % 3 == 2) * 0.3 - 0.1;
    float2 at = place(id / 3 + instance * 977) + corner;
    return {float4(at, fract(float(id / 3) * 0.37), 1), at, id / 3 + instance};
}
vertex Out strip_vertex(uint id [[vertex_id]]) {
    float2 at = float2(float(id / 2 % 150) / 75 - 1, float(id / 300) / 35 - 1 + (id & 1) * 0.05);
    return {float4(at, 0, 1), at, id};
}
fragment float4 triangle_fragment(Out in [[stage_in]]) {
    return float4(fract(float(in.id) * float3(0.13, 0.29, 0.71)), 0.3);
}
fragment float4 numbered_fragment(Out in [[stage_in]], uint id [[primitive_id]]) {
    return float4(fract(float(id) * float3(0.13, 0.29, 0.71)), 0.3);
}
vertex Dot dot_vertex(uint id [[vertex_id]]) {
    return {float4(place(id), 0, 1), float(id % 5) + 0.5, id};
}
fragment float4 dot_fragment(Dot in [[stage_in]], float2 at [[point_coord]]) {
    return float4(at, fract(float(in.id) * 0.17), 0.2) * 0.1;
}

kernel void count_kernel(device uint* values [[buffer(0)]], uint3 id [[thread_position_in_grid]],
                         uint3 size [[threads_per_grid]], uint3 group [[threadgroup_position_in_grid]],
                         uint lane [[thread_index_in_threadgroup]]) {
    uint at = (id.z * size.y + id.y) * size.x + id.x;
    values[at] += at * 31 + group.x * 7 + group.y * 5 + group.z * 3 + lane + size.x;
}
kernel void groups_kernel(device uint* values [[buffer(0)]], uint3 id [[thread_position_in_grid]],
                          uint3 size [[threads_per_grid]], uint3 groups [[threadgroups_per_grid]]) {
    values[(id.z * size.y + id.y) * size.x + id.x] += groups.x + groups.y * 100 + groups.z * 10000;
}
kernel void sum_kernel(device uint* values [[buffer(0)]], uint id [[thread_position_in_grid]]) {
    values[id] += id > 0 ? values[id - 1] & 0 : 1; // after the kernel before it
}

// Deep noise without a loop.
float noise(float2 p) {
    float2 q = fract(sin(float2(dot(p, float2(127.1, 311.7)), dot(p, float2(269.5, 183.3)))) * 43758.5);
    return sin(q.x * 6.28) * cos(q.y * 6.28);
}
float deep1(float2 p) { return noise(p) + noise(p.yx * 1.7 + noise(p * 2.3)) * 0.5; }
float deep2(float2 p) { return deep1(p) + deep1(p.yx + deep1(p * 1.3)) + deep1(p * 1.9); }
float deep3(float2 p) { return deep2(p) + deep2(p.yx + deep2(p * 1.1)) + deep2(p * 1.7); }
fragment float4 deep_fragment(Out in [[stage_in]]) {
    return float4(fract(deep3(in.at * 5)), fract(deep3(in.at.yx * 3)), 0, 1);
}
)msl";

struct Pieces : Gpu {
    // Opens the device anew. `units`: of each piece; 0: by the time that pieces take.
    void open(std::uint64_t units) {
        setenv("TARNWICK_PIECES", std::to_string(units).c_str(), 1);
        device = gpu::Device::systemDefault();
        unsetenv("TARNWICK_PIECES");
        queue = device->newCommandQueue();
        if (!library) // it does not belong to the device
            library = device->newLibrary(program);
    }

    std::uint64_t pieces() const { return device->state().submissions.pieces(); }

    std::unique_ptr<RenderPipelineState> renderPipeline(const char* vertex, const char* fragment,
                                                        RenderPipelineDescriptor descriptor) {
        const auto vertexFunction = library->newFunction(vertex);
        const auto fragmentFunction = library->newFunction(fragment);
        descriptor.vertex = vertexFunction.get();
        descriptor.fragment = fragmentFunction.get();
        return device->newRenderPipelineState(descriptor);
    }

    std::unique_ptr<ComputePipelineState> kernel(const char* name) {
        return device->newComputePipelineState(*library->newFunction(name));
    }

    static std::vector<std::byte> bytesOf(const Texture& texture, std::size_t bytesOfPixel) {
        std::vector<std::byte> bytes(texture.width() * texture.height() * bytesOfPixel);
        texture.getBytes(bytes.data(), texture.width() * bytesOfPixel,
                         {.width = texture.width(), .height = texture.height()}, 0);
        return bytes;
    }

    // What `make` gives in pieces of several sizes is what it gives whole. `isDivided`: the work
    // can be divided.
    void expectTheSame(const std::function<std::vector<std::byte>()>& make, bool isDivided = true) {
        open(1'000'000'000);
        const std::vector<std::byte> whole = make();
        const std::uint64_t fewest = pieces();
        for (const std::uint64_t units : {1024u, 3000u}) {
            open(units);
            const std::vector<std::byte> divided = make();
            const auto first = std::ranges::mismatch(divided, whole).in1 - divided.begin();
            EXPECT_TRUE(divided == whole) << units << " units, from byte " << first << " on";
            EXPECT_EQ(pieces() > fewest, isDivided) << units << " units";
        }
    }

    std::unique_ptr<Library> library;
};

constexpr ColorAttachmentDescriptor blending{.format = PixelFormat::rgba16Float,
                                             .blends = true,
                                             .sourceRGB = BlendFactor::sourceAlpha,
                                             .destinationRGB = BlendFactor::oneMinusSourceAlpha,
                                             .sourceAlpha = BlendFactor::one,
                                             .destinationAlpha = BlendFactor::oneMinusSourceAlpha};

// Derivatives, blending and a scissor with odd edges; each frame reads the one before.
TEST_F(Pieces, drawTheSameFragmentsWithDerivativesAndFeedback) {
    expectTheSame([&] {
        const auto state = renderPipeline("whole_vertex", "edges_fragment", {.color = blending});
        const std::array textures{target(width, height, PixelFormat::rgba16Float),
                                  target(width, height, PixelFormat::rgba16Float)};
        for (std::size_t frame = 0; frame < 5; ++frame)
            render({.color = {.texture = textures[frame % 2].get(), .load = LoadAction::clear}},
                   [&](RenderCommandEncoder& encoder) {
                       encoder.setRenderPipelineState(*state);
                       encoder.setFragmentTexture(textures[(frame + 1) % 2].get(), 0);
                       encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
                       encoder.setScissorRect({.x = 13, .y = 7, .width = 117, .height = 51});
                       encoder.drawPrimitives(PrimitiveType::triangle, 0, 3);
                   });
        return bytesOf(*textures[0], 8);
    });
}

// The ranges of triangles keep their order, and the passes keep depth and samples between pieces.
TEST_F(Pieces, drawTheSameTrianglesWithDepthAndSamples) {
    struct Case {
        const char *vertex, *fragment;
        PrimitiveType type;
        std::uint32_t start, count, instances, samples = 4;
    };
    constexpr std::array cases{
        Case{"triangle_vertex", "triangle_fragment", PrimitiveType::triangle, 3, 24000, 1},
        Case{"triangle_vertex", "triangle_fragment", PrimitiveType::triangle, 0, 300, 70},
        Case{"triangle_vertex", "numbered_fragment", PrimitiveType::triangle, 0, 24000, 1, 1},
        Case{"strip_vertex", "triangle_fragment", PrimitiveType::triangleStrip, 1, 20001, 1, 1}};
    for (const Case& one : cases) {
        SCOPED_TRACE(std::string(one.vertex) + " " + one.fragment + " " +
                     std::to_string(one.instances));
        expectTheSame([&] {
            const auto state = renderPipeline(one.vertex, one.fragment,
                                              {.color = blending,
                                               .depthFormat = PixelFormat::depth32Float,
                                               .sampleCount = one.samples});
            const auto attachment = [&](PixelFormat format) {
                return device->newTexture(
                    {.type = one.samples > 1 ? TextureType::type2DMultisample : TextureType::type2D,
                     .format = format,
                     .width = width,
                     .height = height,
                     .sampleCount = one.samples,
                     .usage = {.renderTarget = true},
                     .storage = StorageMode::private_});
            };
            const auto samples = attachment(PixelFormat::rgba16Float);
            const auto depth = attachment(PixelFormat::depth32Float);
            const auto resolved = target(width, height, PixelFormat::rgba16Float);
            const auto test = device->newDepthStencilState(
                {.depthCompare = CompareFunction::lessEqual, .depthWrites = true});
            const ColorAttachment color =
                one.samples > 1
                    ? ColorAttachment{.texture = samples.get(),
                                      .resolveTexture = resolved.get(),
                                      .load = LoadAction::clear,
                                      .store = StoreAction::multisampleResolve}
                    : ColorAttachment{.texture = resolved.get(), .load = LoadAction::clear};
            render({.color = color, .depth = {.texture = depth.get()}},
                   [&](RenderCommandEncoder& encoder) {
                       encoder.setRenderPipelineState(*state);
                       encoder.setDepthStencilState(*test);
                       encoder.drawPrimitives(one.type, one.start, one.count, one.instances);
                   });
            return bytesOf(*resolved, 8);
        });
    }
}

// Points that add up, which a kernel adds or sorts, and points whose order counts.
TEST_F(Pieces, drawTheSamePoints) {
    ColorAttachmentDescriptor adding = blending;
    adding.sourceRGB = adding.destinationRGB = adding.destinationAlpha = BlendFactor::one;
    for (const ColorAttachmentDescriptor& color : {adding, blending})
        for (const std::uint32_t count : {400u, 60000u})
            expectTheSame([&] {
                const auto state =
                    renderPipeline("dot_vertex", "dot_fragment",
                                   {.color = color, .topology = TopologyClass::point});
                const auto texture = target(width, height, PixelFormat::rgba16Float);
                render({.color = {.texture = texture.get(), .load = LoadAction::clear}},
                       [&](RenderCommandEncoder& encoder) {
                           encoder.setRenderPipelineState(*state);
                           encoder.drawPrimitives(PrimitiveType::point, 5, count);
                       });
                return bytesOf(*texture, 8);
            });
}

TEST_F(Pieces, runTheSameKernels) {
    struct Case {
        const char* kernel;
        Size threads, group;
        bool isDivided = true;
    };
    constexpr std::array cases{Case{"count_kernel", {20000, 1, 1}, {64, 1, 1}},
                               Case{"count_kernel", {90, 130, 3}, {8, 4, 1}},
                               Case{"count_kernel", {5, 7, 700}, {4, 4, 4}},
                               Case{"sum_kernel", {30000, 1, 1}, {100, 1, 1}},
                               Case{"groups_kernel", {200, 150, 1}, {8, 8, 1}, false}};
    for (const Case& one : cases)
        expectTheSame(
            [&] {
                const auto state = kernel(one.kernel);
                const std::size_t count =
                    std::size_t{one.threads.width} * one.threads.height * one.threads.depth;
                const auto buffer = device->newBuffer(count * 4);
                auto commands = queue->commandBuffer();
                auto encoder = commands->computeCommandEncoder();
                encoder->setComputePipelineState(*state);
                encoder->setBuffer(*buffer, 0, 0);
                for (int step = 0; step < 3; ++step)
                    encoder->dispatchThreads(one.threads, one.group);
                encoder->endEncoding();
                finish(*commands);
                std::vector<std::byte> bytes(count * 4);
                std::memcpy(bytes.data(), buffer->contents(), bytes.size());
                return bytes;
            },
            one.isDivided);
}

// The buffers and queues that follow work in pieces see what it stored.
TEST_F(Pieces, keepTheOrderOfCommandBuffers) {
    open(1024);
    const auto state = kernel("count_kernel");
    constexpr std::uint32_t count = 30000;
    const auto buffer = device->newBuffer(count * 4);
    const auto other = device->newCommandQueue();
    for (int step = 0; step < 4; ++step) {
        auto commands = (step % 2 == 0 ? queue : other)->commandBuffer();
        auto encoder = commands->computeCommandEncoder();
        encoder->setComputePipelineState(*state);
        encoder->setBuffer(*buffer, 0, 0);
        encoder->dispatchThreads({step == 1 ? 64u : count, 1, 1}, {64, 1, 1});
        encoder->endEncoding();
        commands->commit();
        if (step == 3)
            commands->waitUntilCompleted(); // the buffers before are destroyed unfinished
    }
    const auto* values = static_cast<const std::uint32_t*>(buffer->contents());
    for (std::uint32_t at = 0; at < count; ++at)
        ASSERT_EQ(values[at], (at < 64 ? 4 : 3) * (at * 31 + at / 64 * 7 + at % 64 + count) -
                                  (at < 64 ? count - 64 : 0))
            << at;
}

// Work without a loop is slow by its size alone. It goes in pieces as soon as its first piece was
// measured, can be abandoned between two, and the command buffers after it are not disturbed.
TEST_F(Pieces, divideSlowWorkAndAbandonIt) {
    open(0);
    const auto state = renderPipeline("whole_vertex", "deep_fragment",
                                      {.color = {.format = PixelFormat::rgba8Unorm}});
    const auto texture = target(1920, 1080);
    auto commands = queue->commandBuffer();
    auto encoder = commands->renderCommandEncoder(
        {.color = {.texture = texture.get(), .load = LoadAction::clear}});
    encoder->setRenderPipelineState(*state);
    for (int layer = 0; layer < 100; ++layer)
        encoder->drawPrimitives(PrimitiveType::triangle, 0, 3);
    encoder->endEncoding();
    commands->commit();
    while (pieces() < 5)
        EXPECT_FALSE(commands->waitUntilCompleted(0.01));
    commands->abandon();
    commands->waitUntilCompleted();
    EXPECT_EQ(commands->status(), CommandBufferStatus::completed);
    EXPECT_LT(pieces(), 100u); // each layer has several

    const auto small = target(8, 8);
    draw(*state, *small);
    EXPECT_NE(pixelAt(*small, 3, 3), (Pixel{0, 0, 0, 255}));
}

TEST_F(Pieces, endWithALostDevice) {
    open(1024);
    const auto state = kernel("count_kernel");
    const auto buffer = device->newBuffer(1'000'000 * 4);
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*state);
    encoder->setBuffer(*buffer, 0, 0);
    encoder->dispatchThreads({1'000'000, 1, 1}, {64, 1, 1});
    encoder->endEncoding();
    commands->commit();
    device->lose();
    commands->waitUntilCompleted();
    EXPECT_EQ(commands->status(), CommandBufferStatus::error);
    EXPECT_FALSE(queue->commandBuffer());
}

} // namespace

} // namespace tarnwick::tests
