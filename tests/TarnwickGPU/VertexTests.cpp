// Vertex descriptors, stage-input descriptors and draws with indices.
#include "TarnwickGPU/Vulkan/VertexFormats.h"
#include "tests/TarnwickGPU/Gpu.h"
#include "tests/Thrown.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <random>

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr const char* head = "#include <metal_stdlib>\nusing namespace metal;\n";

class Vertices : public Gpu {
  protected:
    std::unique_ptr<Function> function(const std::string& name) {
        return library->newFunction(name);
    }
    std::unique_ptr<RenderPipelineState>
    pipelineOf(const std::string& vertex, const VertexDescriptor& descriptor,
               TopologyClass topology = TopologyClass::triangle) {
        const auto first = function(vertex), second = function("paint");
        return device->newRenderPipelineState({.vertex = first.get(),
                                               .fragment = second.get(),
                                               .vertexDescriptor = &descriptor,
                                               .color = {.format = PixelFormat::rgba8Unorm},
                                               .topology = topology});
    }
    // Draws on `picture`, which is cleared.
    template <typename Encode> void render(const RenderPipelineState& state, const Encode& encode) {
        Gpu::render({.color = {.texture = picture.get(), .load = LoadAction::clear}},
                    [&](auto& encoder) {
                        encoder.setRenderPipelineState(state);
                        encode(encoder);
                    });
    }

    std::unique_ptr<Library> library;
    std::unique_ptr<Texture> picture;
};

// Whether a device's conversion may have given the one for the other.
bool isSame(std::uint32_t one, std::uint32_t other, bool isInteger) {
    const float a = std::bit_cast<float>(one), b = std::bit_cast<float>(other);
    return one == other || (!isInteger && ((std::isnan(a) && std::isnan(b)) ||
                                           std::abs(a - b) <= 1e-6f * std::abs(a)));
}

// Vulkan's own reading of vertices against the code that reads them for kernels.
TEST_F(Vertices, readsEveryFormatForKernelsAsTheDeviceReadsItForVertices) {
    std::string source = head;
    for (const std::string type : {"float4", "int4", "uint4"})
        source += "struct In_" + type + " { " + type + " value [[attribute(3)]]; };\n" +
                  "vertex float4 vertex_" + type + "(In_" + type + " in [[stage_in]], device " +
                  type + "* out [[buffer(0)]], uint i [[vertex_id]]) {\n" +
                  "    out[i] = in.value; return 0;\n}\n" + "kernel void kernel_" + type + "(In_" +
                  type + " in [[stage_in]], device " + type +
                  "* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {\n" +
                  "    out[i] = in.value;\n}\n";
    library = device->newLibrary(source + "fragment float4 paint() { return 0; }\n");
    picture = target(1, 1);
    constexpr std::uint32_t elements = 60, stride = 20;
    std::vector<std::uint32_t> bytes(elements * stride / 4);
    std::mt19937 random(7);
    for (std::uint32_t& word : bytes)
        word = static_cast<std::uint32_t>(random());
    std::size_t read = 0;
    const auto last = static_cast<std::size_t>(VertexFormat::floatRGB9E5);
    for (std::size_t number = 1; number <= last; ++number) {
        const VertexFormatRow& row = vertexFormat(static_cast<VertexFormat>(number));
        const std::string type = row.kind == NumberKind::uint   ? "uint4"
                                 : row.kind == NumberKind::sint ? "int4"
                                                                : "float4";
        StageInputDescriptor input;
        input.buffers.attributes[3] = {.format = row.format, .offset = 4, .bufferIndex = 1};
        input.buffers.layouts[1] = {.stride = stride, .step = StepFunction::threadPositionInGridX};
        const auto kernel = device->newComputePipelineState(*function("kernel_" + type), &input);
        const auto ofKernel = device->newBuffer(elements * 16),
                   ofVertices = device->newBuffer(elements * 16);
        auto commands = queue->commandBuffer();
        auto encoder = commands->computeCommandEncoder();
        encoder->setComputePipelineState(*kernel);
        encoder->setBuffer(*ofKernel, 0, 0);
        encoder->setBytes(bytes.data(), bytes.size() * 4, 1);
        encoder->dispatchThreads({elements, 1, 1}, {16, 1, 1});
        encoder->endEncoding();
        finish(*commands);
        input.buffers.layouts[1].step = StepFunction::perVertex;
        std::unique_ptr<RenderPipelineState> state;
        try {
            state = pipelineOf("vertex_" + type, input.buffers);
        } catch (const DeviceError& error) {
            EXPECT_TRUE(
                std::string(error.what()).ends_with("of the format " + std::string(row.name) + "."))
                << error.what();
            continue;
        }
        ++read;
        render(*state, [&](auto& drawing) {
            drawing.setVertexBuffer(*ofVertices, 0, 0);
            drawing.setVertexBytes(bytes.data(), bytes.size() * 4, 1);
            drawing.drawPrimitives(PrimitiveType::triangle, 0, elements);
        });
        const auto* given = static_cast<const std::uint32_t*>(ofKernel->contents());
        const auto* wanted = static_cast<const std::uint32_t*>(ofVertices->contents());
        for (std::size_t i = 0; i < elements * 4; ++i)
            ASSERT_TRUE(isSame(wanted[i], given[i], row.isInteger()))
                << row.name << ", component " << i << ": " << std::hex << wanted[i] << " "
                << given[i];
    }
    EXPECT_GE(read, 40u);
}

constexpr const char* steps = R"(
struct In { float v [[attribute(0)]]; float i [[attribute(1)]]; float c [[attribute(2)]]; };
vertex float4 record(In in [[stage_in]], device float4* out [[buffer(0)]],
                     uint vertex_ [[vertex_id]], uint instance [[instance_id]]) {
    out[instance * 16 + vertex_] = float4(in.v, in.i, in.c, 1);
    return 0;
}
fragment float4 paint() { return 1; }
)";

TEST_F(Vertices, stepsThroughVerticesInstancesAndConstants) {
    library = device->newLibrary(std::string(head) + steps);
    picture = target(1, 1);
    VertexDescriptor descriptor;
    for (std::uint32_t n = 0; n < 3; ++n)
        descriptor.attributes[n] = {.format = VertexFormat::float_, .bufferIndex = n + 1};
    descriptor.layouts[1] = {.stride = 4};
    descriptor.layouts[2] = {.stride = 8, .step = StepFunction::perInstance, .stepRate = 2};
    descriptor.layouts[3] = {.step = StepFunction::constant};
    const auto state = pipelineOf("record", descriptor);
    std::array<float, 32> ramp{};
    for (std::size_t i = 0; i < ramp.size(); ++i)
        ramp[i] = 100 + static_cast<float>(i);
    const float constant = 0.5f;
    const auto indices = device->newBuffer(16);
    const std::array<std::uint16_t, 4> numbers{9, 7, 0, 3};
    std::memcpy(indices->contents(), numbers.data(), sizeof numbers);

    for (const bool isIndexed : {false, true}) {
        const auto out = device->newBuffer(16 * 16 * 16);
        render(*state, [&](auto& encoder) {
            encoder.setVertexBuffer(*out, 0, 0);
            encoder.setVertexBytes(ramp.data(), sizeof ramp, 1);
            encoder.setVertexBytes(ramp.data(), sizeof ramp, 2);
            encoder.setVertexBytes(&constant, sizeof constant, 3);
            if (isIndexed)
                encoder.drawIndexedPrimitives(PrimitiveType::triangle, 3, IndexType::uint16,
                                              *indices, 2, 4, 1, 5);
            else
                encoder.drawPrimitives(PrimitiveType::triangle, 2, 3, 4, 5);
        });
        const auto* given = static_cast<const std::array<float, 4>*>(out->contents());
        std::size_t written = 0;
        for (std::uint32_t at = 0; at < 256; ++at)
            written += given[at][3] != 0;
        EXPECT_EQ(written, 12u);
        for (const std::uint32_t vertex :
             isIndexed ? std::array{8u, 1u, 4u} : std::array{2u, 3u, 4u})
            for (std::uint32_t instance = 5; instance < 9; ++instance)
                EXPECT_EQ(
                    given[instance * 16 + vertex],
                    (std::array{ramp[vertex], ramp[2 * (5 + (instance - 5) / 2)], constant, 1.0f}))
                    << "vertex " << vertex << ", instance " << instance;
    }
}

constexpr const char* places = R"(
struct In { float2 at [[attribute(0)]]; };
struct Out { float4 at [[position]]; float size [[point_size]]; };
vertex Out place(In in [[stage_in]]) { return {float4(in.at, 0, 1), 1}; }
fragment float4 paint() { return 1; }
)";

TEST_F(Vertices, endsStripsAtTheGreatestIndexAndDrawsPoints) {
    library = device->newLibrary(std::string(head) + places);
    picture = target(8, 8);
    VertexDescriptor descriptor;
    descriptor.attributes[0] = {.format = VertexFormat::float2};
    descriptor.layouts[0] = {.stride = 8};
    // A triangle at the left edge and one at the right.
    const float corners[]{-1, 1, -0.5f, 1, -1, -1, 0.5f, -1, 1, 1, 1, -1};
    const auto indices = device->newBuffer(32);
    const std::array<std::uint32_t, 7> numbers{0, 1, 2, ~0u, 3, 4, 5};
    std::memcpy(indices->contents(), numbers.data(), sizeof numbers);
    render(*pipelineOf("place", descriptor), [&](auto& encoder) {
        encoder.setVertexBytes(corners, sizeof corners, 0);
        encoder.drawIndexedPrimitives(PrimitiveType::triangleStrip, 7, IndexType::uint32, *indices,
                                      0);
    });
    const Pixel white{255, 255, 255, 255}, black{0, 0, 0, 255};
    EXPECT_EQ(pixelAt(*picture, 0, 2), white);
    EXPECT_EQ(pixelAt(*picture, 7, 5), white);
    for (std::uint32_t y = 0; y < 8; ++y)
        EXPECT_EQ(pixelAt(*picture, 3, y), black);

    const float points[]{-0.875f, 0.875f, 0.125f, -0.125f};
    render(*pipelineOf("place", descriptor, TopologyClass::point), [&](auto& encoder) {
        encoder.setVertexBytes(points, sizeof points, 0);
        encoder.drawIndexedPrimitives(PrimitiveType::point, 2, IndexType::uint32, *indices, 0);
    });
    EXPECT_EQ(pixelAt(*picture, 0, 0), white);
    EXPECT_EQ(pixelAt(*picture, 4, 4), white);
    EXPECT_EQ(pixelAt(*picture, 4, 3), black);
}

TEST_F(Vertices, refusesDescriptorsThatDoNotFitTheFunction) {
    library = device->newLibrary(
        std::string(head) +
        "struct In { float3 at [[attribute(2)]]; };\n"
        "vertex float4 place(In in [[stage_in]]) { return float4(in.at, 1); }\n"
        "kernel void put(In in [[stage_in]], device float3* out [[buffer(0)]]) { *out = in.at; }\n"
        "fragment float4 paint() { return 1; }\n");
    const auto reason = [&](const VertexDescriptor& descriptor) {
        const std::string text = thrownBy<DeviceError>([&] { pipelineOf("place", descriptor); });
        return text.substr(text.find(": ") + 2);
    };
    VertexDescriptor descriptor;
    EXPECT_EQ(reason(descriptor), "the vertex descriptor has no attribute 2 (at).");
    descriptor.attributes[2] = {.format = VertexFormat::uint3, .offset = 4, .bufferIndex = 30};
    descriptor.layouts[30] = {.stride = 16};
    EXPECT_EQ(reason(descriptor), "attribute 2 (at) is of type float3, which cannot be read from "
                                  "the format uint3.");
    descriptor.attributes[2].format = VertexFormat::half2;
    EXPECT_NO_THROW(pipelineOf("place", descriptor));
    descriptor.attributes[2].offset = 2;
    EXPECT_EQ(reason(descriptor),
              "attribute 2 (at) has the offset 2, which is not a multiple of 4.");
    descriptor.attributes[2].offset = 0;
    descriptor.layouts[30].stride = 6;
    EXPECT_EQ(reason(descriptor),
              "the layout of buffer 30 has the stride 6, which is not a multiple of 4.");
    descriptor.layouts[30] = {.stride = 8, .step = StepFunction::perPatch};
    EXPECT_EQ(reason(descriptor), "the layout of buffer 30 has the step function perPatch, which a "
                                  "vertex function does not have.");
    EXPECT_EQ(thrownBy<DeviceError>([&] { device->newComputePipelineState(*function("put")); }),
              "The device could not make the compute pipeline of put: put reads attribute 2 (at), "
              "and there is no vertex descriptor.");
}

} // namespace

} // namespace tarnwick::tests
