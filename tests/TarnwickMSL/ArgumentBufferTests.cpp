// Argument buffers as a host sets them and kernels read them, and the pointers that are refused to
// programs that nothing may reach beyond their buffers.
#include "TarnwickGPU/ArgumentEncoder.h"
#include "TarnwickMSL/Compile.h"
#include "tests/TarnwickMSL/KernelTest.h"

namespace tarnwick {

namespace {

constexpr const char* program = R"(
struct Part { float scale [[id(0)]]; sampler filter [[id(1)]]; };
struct Args {
    array<texture2d<float>, 3> pictures [[id(0)]];
    device const float* values [[id(4)]];
    Part part [[id(10)]];
    device float* outs[2] [[id(5)]];
    device float* far[12] [[id(30)]]; // more than become a choice of buffers: addresses
};
kernel void check(device float* out [[buffer(0)]], constant Args& args [[buffer(1)]],
                  uint i [[thread_position_in_grid]]) {
    float4 texel = args.pictures[i % 3].sample(args.part.filter, float2(1.5, 0.5));
    out[i] = texel.x * args.part.scale + args.values[i];
    args.outs[i & 1][i] = float(i);
    args.far[2 * i][0] += float(i);
}
)";

class ArgumentBuffers : public tests::KernelTest {
  protected:
    // A texture of two pixels beside each other.
    std::unique_ptr<gpu::Texture> picture(float left, float right) {
        auto made = device->newTexture({.format = gpu::PixelFormat::r32Float, .width = 2});
        const std::array pixels{left, right};
        made->replace({.width = 2, .height = 1}, 0, pixels.data(), sizeof pixels);
        return made;
    }
    std::vector<float> dispatch(const gpu::Buffer& arguments);

    std::unique_ptr<gpu::Library> library;
    std::unique_ptr<gpu::ArgumentEncoder> encoder;
};

std::vector<float> ArgumentBuffers::dispatch(const gpu::Buffer& arguments) {
    const auto state = device->newComputePipelineState(*library->newFunction("check"));
    const auto out = device->newBuffer(6 * sizeof(float));
    auto commands = queue->commandBuffer();
    auto compute = commands->computeCommandEncoder();
    compute->setComputePipelineState(*state);
    compute->setBuffer(*out, 0, 0);
    compute->setBuffer(arguments, 0, 1);
    compute->dispatchThreads({6, 1, 1}, {6, 1, 1});
    compute->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    const auto* first = static_cast<const float*>(out->contents());
    return {first, first + 6};
}

} // namespace

TEST_F(ArgumentBuffers, giveAKernelTexturesSamplersPointersAndConstants) {
    library = compiled(program);
    encoder = library->newFunction("check")->newArgumentEncoder(1);
    ASSERT_TRUE(encoder);
    EXPECT_FALSE(library->newFunction("check")->newArgumentEncoder(0));
    const auto arguments = device->newBuffer(encoder->encodedLength());
    const auto values = device->newBuffer(1024), first = device->newBuffer(64),
               second = device->newBuffer(64), far = device->newBuffer(96);
    const std::array pictures{picture(1, 10), picture(2, 20), picture(3, 30)};
    const auto repeating =
        device->newSamplerState({.sAddressMode = gpu::SamplerAddressMode::repeat});
    for (std::size_t i = 0; i < 6; ++i)
        static_cast<float*>(values->contents())[64 + i] = 100.0f * static_cast<float>(i);

    encoder->setArgumentBuffer(*arguments, 0);
    for (std::uint32_t n = 0; n < 3; ++n)
        encoder->setTexture(*pictures[n], n);
    encoder->setBuffer(*values, 256, 4);
    encoder->setBuffer(*first, 0, 5);
    encoder->setBuffer(*second, 0, 6);
    for (std::uint32_t n = 0; n < 6; ++n)
        encoder->setBuffer(*far, std::size_t{16} * n, 30 + 2 * n);
    static_cast<float*>(far->contents())[20] = 0.5f;
    encoder->setSamplerState(*repeating, 11);
    *static_cast<float*>(encoder->constantData(10)) = 2.0f;
    EXPECT_FALSE(encoder->constantData(99));

    EXPECT_EQ(dispatch(*arguments), (std::vector<float>{20, 140, 260, 320, 440, 560}));
    const auto* even = static_cast<const float*>(first->contents());
    const auto* odd = static_cast<const float*>(second->contents());
    EXPECT_EQ((std::vector<float>{even, even + 6}), (std::vector<float>{0, 0, 2, 0, 4, 0}));
    EXPECT_EQ((std::vector<float>{odd, odd + 6}), (std::vector<float>{0, 1, 0, 3, 0, 5}));
    for (std::size_t n = 0; n < 6; ++n)
        EXPECT_EQ(static_cast<const float*>(far->contents())[4 * n],
                  static_cast<float>(n) + (n == 5 ? 0.5f : 0.0f));
}

TEST_F(ArgumentBuffers, readAsZeroWhereNothingIsSetOrTheTextureIsGone) {
    library = compiled(program);
    encoder = library->newFunction("check")->newArgumentEncoder(1);
    const auto arguments = device->newBuffer(encoder->encodedLength());
    EXPECT_EQ(dispatch(*arguments), std::vector<float>(6, 0.0f));
    encoder->setArgumentBuffer(*arguments, 0);
    encoder->setTexture(*picture(1, 10), 0); // destroyed at once
    EXPECT_EQ(dispatch(*arguments), std::vector<float>(6, 0.0f));
}

// The second kernel reads the pointers that the first wrote; the host reads the textures.
TEST_F(ArgumentBuffers, areReadAndWrittenInArrays) {
    library = compiled(R"(
struct Args {
    texture2d<float> picture [[id(0)]];
    device float* values [[id(1)]];
};
kernel void fill(device Args* args [[buffer(1)]], device float* values [[buffer(2)]],
                 uint i [[thread_position_in_grid]]) {
    args[i].values = values + 64 * i;
}
kernel void check(device float* out [[buffer(0)]], constant Args* args [[buffer(1)]],
                  uint i [[thread_position_in_grid]]) {
    float4 texel = args[0].picture.read(uint2(0)) * args[2].picture.read(uint2(1, 0));
    texel += args[min(i, 2u)].picture.read(uint2(0));
    out[i] = texel.x + args[i % 3].values[1] + args[1].values[0];
}
)");
    encoder = library->newFunction("check")->newArgumentEncoder(1);
    const std::size_t stride = encoder->encodedLength();
    const auto arguments = device->newBuffer(3 * stride), values = device->newBuffer(1024);
    for (std::size_t i = 0; i < 256; ++i)
        static_cast<float*>(values->contents())[i] = static_cast<float>(i);
    const std::array pictures{picture(1, 10), picture(2, 20), picture(3, 30)};
    for (std::uint32_t n = 0; n < 3; ++n) {
        encoder->setArgumentBuffer(*arguments, n * stride);
        encoder->setTexture(*pictures[n], 0);
    }
    const auto fill = device->newComputePipelineState(*library->newFunction("fill"));
    auto commands = queue->commandBuffer();
    auto compute = commands->computeCommandEncoder();
    compute->setComputePipelineState(*fill);
    compute->setBuffer(*arguments, 0, 1);
    compute->setBuffer(*values, 0, 2);
    compute->dispatchThreads({3, 1, 1}, {3, 1, 1});
    compute->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    EXPECT_EQ(dispatch(*arguments), (std::vector<float>{96, 161, 226, 98, 162, 226}));
}

TEST(PointersInBuffers, areRefusedToProgramsThatMayNotFollowThem) {
    const std::string start = "#include <metal_stdlib>\nusing namespace metal;\n"
                              "struct Node { device Node* next; float value; };\n";
    const std::array programs{
        "kernel void k(device Node* n) { n->next->value = 1.0; }\n",
        "kernel void k(device Node* n, device float* v) { *(device float*)ulong(v[0]) = 1.0; }\n",
        "kernel void k(device Node* n) { n->next = n; }\n"};
    for (const char* each : programs) {
        const auto found =
            msl::compile(start + each, {.target = {.followsAddresses = false}}).messages;
        EXPECT_NE(found.find("program_source:4:"), found.npos) << found;
        EXPECT_NE(found.find("A pointer kept in a buffer is not available to this program"),
                  found.npos)
            << found;
        EXPECT_FALSE(msl::compile(start + each).failed);
    }
    EXPECT_FALSE(msl::compile(start + "kernel void k(device Node* n) { n->value = 1.0; }\n",
                              {.target = {.followsAddresses = false}})
                     .failed);
}

} // namespace tarnwick
