// Every program of the corpus runs or draws what the comments at its head say (CorpusProgram.h) and
// gives the numbers and the pixels that they promise. That each makes valid modules, the validity
// tests see to.
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickMSL/Compile.h"
#include "tests/TarnwickMSL/CorpusConstants.h"
#include "tests/TarnwickMSL/CorpusProgram.h"
#include "tests/TarnwickMSL/NumberedTextures.h"
#include "tests/Validation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <map>
#include <numeric>

namespace tarnwick::corpus {

void PrintTo(const Program& program, std::ostream* out) { // what a failure names
    *out << program.name;
}

namespace {

constexpr std::size_t numbers = 256, words = 1024;
constexpr std::uint32_t side = 8; // of the picture
using Picture = std::array<float, side * side * 4>;

// The components of a target's pixels as numbers.
Picture numbersOf(const gpu::Texture& texture, const tests::Component& component) {
    std::vector<std::byte> bytes(side * side * 4 * component.bytes);
    texture.getBytes(bytes.data(), side * 4 * component.bytes, {.width = side, .height = side}, 0);
    Picture picture{};
    for (std::size_t i = 0; i < picture.size(); i++) {
        _Float16 half = 0;
        std::int32_t whole = 0;
        const std::byte* from = &bytes[i * component.bytes];
        if (component.isReal && component.bytes == 4)
            std::memcpy(&picture[i], from, 4);
        else if (component.isReal) {
            std::memcpy(&half, from, 2);
            picture[i] = static_cast<float>(half);
        } else {
            std::memcpy(&whole, from, component.bytes);
            picture[i] = static_cast<float>(whole);
        }
    }
    return picture;
}

class Corpus : public testing::TestWithParam<Program> {
  protected:
    static void SetUpTestSuite() { device = gpu::Device::systemDefault(); }
    static void TearDownTestSuite() { device.reset(); }
    void SetUp() override;
    void clear();

    void bind(const Program& program);
    void expectAll(const Program& program, const gpu::Library& library, HasValues hasValues);
    void dispatch(const CorpusFunctions& functions, const Dispatch& given);
    void draw(const CorpusFunctions& functions, const DrawCall& given);
    void expectNumbers(const Program& program) const;
    void expectPixels(const Program& program) const;

    static inline std::shared_ptr<gpu::Device> device;
    std::unique_ptr<gpu::CommandQueue> queue;
    std::unique_ptr<gpu::Buffer> out, scratch;
    std::map<std::uint32_t, std::unique_ptr<gpu::Texture>> textures; // by their index
    std::map<std::uint32_t, std::unique_ptr<gpu::SamplerState>> samplers;
    std::vector<ColorTarget> targets; // beside that of color(0)
    std::vector<float> in = std::vector<float>(numbers);
    gpu::StageInputDescriptor attributes{.indexType = gpu::IndexType::uint32,
                                         .indexBufferIndex = 2};
    std::array<Picture, gpu::mostColors> pictures{};
};

void Corpus::SetUp() {
    if (!device)
        GTEST_SKIP() << "No Vulkan device is here.";
    queue = device->newCommandQueue();
    clear();
}

void Corpus::clear() {
    out = device->newBuffer(numbers * sizeof(float));
    scratch = device->newBuffer(words * sizeof(std::uint32_t));
    std::iota(in.begin(), in.end(), 0.0f);
    pictures = {};
    const std::vector<float> nothing(numbers, NAN);
    std::memcpy(out->contents(), nothing.data(), numbers * sizeof(float));
}

void Corpus::bind(const Program& program) {
    attributes.buffers = program.attributes;
    targets = program.targets;
    for (const BoundTexture& given : program.textures) {
        textures[given.index] =
            tests::numberedTexture(*device, given.descriptor, tests::componentOf(given.component));
        ASSERT_TRUE(textures[given.index]) << "texture " << given.index;
    }
    for (const BoundSampler& given : program.samplers)
        samplers[given.index] = device->newSamplerState(given.descriptor);
}

void Corpus::dispatch(const CorpusFunctions& functions, const Dispatch& given) {
    const auto function = functions.take(given.kernel);
    ASSERT_TRUE(function) << given.kernel;
    const auto pipeline = device->newComputePipelineState(*function, &attributes);
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*pipeline);
    encoder->setBuffer(*out, 0, 0);
    encoder->setBytes(in.data(), in.size() * sizeof(float), 1);
    encoder->setBuffer(*scratch, 0, 2);
    for (const auto& [index, texture] : textures)
        encoder->setTexture(texture.get(), index);
    for (const auto& [index, sampler] : samplers)
        encoder->setSamplerState(sampler.get(), index);
    if (given.stageIn)
        encoder->setStageInRegion(*given.stageIn);
    encoder->dispatchThreads(given.grid, given.threadgroup);
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    EXPECT_EQ(commands->status(), gpu::CommandBufferStatus::completed);
}

std::unique_ptr<gpu::RenderPipelineState>
pipelineFor(gpu::Device& device, const CorpusFunctions& functions, const DrawCall& given,
            const gpu::VertexDescriptor& attributes, const std::vector<ColorTarget>& targets) {
    const auto vertex = functions.first(msl::Stage::vertex);
    const auto fragment = functions.first(msl::Stage::fragment);
    gpu::RenderPipelineDescriptor descriptor{
        .vertex = vertex.get(), .fragment = fragment.get(), .vertexDescriptor = &attributes};
    descriptor.tessellation = {.partitionMode = gpu::TessellationPartitionMode::integer,
                               .factorStepFunction = gpu::TessellationFactorStepFunction::perPatch};
    descriptor.color = {.format = gpu::PixelFormat::rgba32Float, .blends = given.hasSources};
    if (given.hasSources)
        descriptor.color.destinationRGB = descriptor.color.destinationAlpha =
            gpu::BlendFactor::source1Color;
    for (const ColorTarget& each : targets)
        descriptor.otherColors[each.index - 1].format = tests::componentOf(each.component).format;
    if (given.hasDepth)
        descriptor.depthFormat = gpu::PixelFormat::depth32Float;
    descriptor.sampleCount = given.hasSamples ? 4 : 1;
    descriptor.topology = given.type == gpu::PrimitiveType::point ? gpu::TopologyClass::point
                                                                  : gpu::TopologyClass::triangle;
    return device.newRenderPipelineState(descriptor);
}

std::unique_ptr<gpu::Texture> target(gpu::Device& device, gpu::PixelFormat format,
                                     std::uint32_t samples) {
    const bool isRead = samples == 1 && format != gpu::PixelFormat::depth32Float;
    return device.newTexture(
        {.type = samples > 1 ? gpu::TextureType::type2DMultisample : gpu::TextureType::type2D,
         .format = format,
         .width = side,
         .height = side,
         .sampleCount = samples,
         .usage = {.shaderRead = isRead, .renderTarget = true},
         .storage = isRead ? gpu::StorageMode::shared : gpu::StorageMode::private_});
}

void Corpus::draw(const CorpusFunctions& functions, const DrawCall& given) {
    const auto pipeline = pipelineFor(*device, functions, given, attributes.buffers, targets);
    const auto resolved = target(*device, gpu::PixelFormat::rgba32Float, 1);
    const auto samples =
        given.hasSamples ? target(*device, gpu::PixelFormat::rgba32Float, 4) : nullptr;
    const auto depth =
        given.hasDepth ? target(*device, gpu::PixelFormat::depth32Float, given.hasSamples ? 4 : 1)
                       : nullptr;
    const auto less = device->newDepthStencilState(
        {.depthCompare = gpu::CompareFunction::less, .depthWrites = true});
    gpu::RenderPassDescriptor pass{
        .color = {.texture = samples ? samples.get() : resolved.get(),
                  .resolveTexture = samples ? resolved.get() : nullptr,
                  .load = gpu::LoadAction::clear,
                  .store = samples ? gpu::StoreAction::multisampleResolve : gpu::StoreAction::store,
                  .clear = {0, 0, 0, 0}},
        .depth = {.texture = depth.get()}};
    std::map<std::uint32_t, std::unique_ptr<gpu::Texture>> others;
    for (const ColorTarget& each : targets) {
        others[each.index] = target(*device, tests::componentOf(each.component).format, 1);
        pass.otherColors[each.index - 1] = {.texture = others[each.index].get(),
                                            .load = gpu::LoadAction::clear,
                                            .clear = {0, 0, 0, 0}};
    }
    auto commands = queue->commandBuffer();
    auto encoder = commands->renderCommandEncoder(pass);
    encoder->setRenderPipelineState(*pipeline);
    if (depth)
        encoder->setDepthStencilState(*less);
    encoder->setVertexBuffer(*out, 0, 0);
    encoder->setVertexBytes(in.data(), in.size() * sizeof(float), 1);
    encoder->setVertexBuffer(*scratch, 0, 2);
    encoder->setFragmentBuffer(*out, 0, 0);
    encoder->setFragmentBytes(in.data(), in.size() * sizeof(float), 1);
    encoder->setFragmentBuffer(*scratch, 0, 2);
    for (const auto& [index, texture] : textures) {
        encoder->setVertexTexture(texture.get(), index);
        encoder->setFragmentTexture(texture.get(), index);
    }
    for (const auto& [index, sampler] : samplers) {
        encoder->setVertexSamplerState(sampler.get(), index);
        encoder->setFragmentSamplerState(sampler.get(), index);
    }
    if (given.controlPoints) {
        encoder->setTessellationFactorBuffer(*scratch, 0, 0);
        encoder->drawPatches(given.controlPoints, 0, given.vertices);
    }
    for (int draw = 0; !given.controlPoints && draw < (given.isTwice ? 2 : 1); draw++)
        encoder->drawPrimitives(given.type, 0, given.vertices, given.instances);
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    EXPECT_EQ(commands->status(), gpu::CommandBufferStatus::completed);
    pictures[0] = numbersOf(*resolved, tests::componentOf("float"));
    for (const ColorTarget& each : targets)
        pictures[each.index] = numbersOf(*others[each.index], tests::componentOf(each.component));
}

void Corpus::expectNumbers(const Program& program) const {
    std::vector<float> given(numbers);
    std::memcpy(given.data(), out->contents(), numbers * sizeof(float));
    for (std::size_t i = 0; i < program.expected.size(); i++) {
        const float wanted = program.expected[i];
        if (std::isnan(wanted) || given[i] == wanted) // an infinity equals itself
            continue;
        EXPECT_NEAR(given[i], wanted, program.tolerance * std::abs(wanted)) << "out[" << i << "]";
    }
}

void Corpus::expectPixels(const Program& program) const {
    for (const Pixel& pixel : program.pixels)
        for (std::size_t i = 0; i < 4; i++)
            EXPECT_NEAR(pictures[pixel.target][(pixel.y * side + pixel.x) * 4 + i], pixel.color[i],
                        program.tolerance * std::max(std::abs(pixel.color[i]), 1.0f))
                << "component " << i << " of pixel " << pixel.x << ", " << pixel.y << " of color("
                << pixel.target << ")";
}

void Corpus::expectAll(const Program& program, const gpu::Library& library, HasValues hasValues) {
    const CorpusFunctions functions(library, program, hasValues);
    for (const Dispatch& each : program.runs)
        dispatch(functions, each);
    for (const DrawCall& each : program.draws)
        draw(functions, each);
    expectNumbers(program);
    expectPixels(program);
}

} // namespace

TEST_P(Corpus, givesWhatItPromises) {
    const Program& program = GetParam();
    ASSERT_TRUE(program.draws.empty() || !program.pixels.empty() || !program.expected.empty());
    bind(program);
    expectAll(program, *device->newLibrary(program.source), HasValues::no);
    if (program.constants.empty())
        return;
    clear();
    expectAll(program, *gpu::newLibrary(program.source, {.constants = constantsOf(program)}),
              HasValues::yes);
}

// Words and floats that stand for the other types give the same numbers, and so do loops for
// atomic sums of floats. A program that has none of these is the same program.
TEST_P(Corpus, givesItWithoutSmallAndLongTypes) {
    const Program& program = GetParam();
    msl::Target target = device->compilerTarget();
    const msl::Compilation whole = msl::compile(program.source, {.target = target});
    target.hasInt8 = target.hasInt16 = target.hasInt64 = target.hasFloat16 = false;
    target.addsFloatsInBuffers = false;
    const msl::Compilation lowered = msl::compile(program.source, {.target = target});
    EXPECT_EQ(lowered.failed, !program.refusal.empty()) << lowered.messages;
    EXPECT_NE(lowered.messages.find(program.refusal), std::string::npos) << lowered.messages;
    if (lowered.failed || lowered.entryPoints == whole.entryPoints)
        return;
    bind(program);
    expectAll(program, *gpu::newLibrary(program.source, {.target = target}), HasValues::no);
}

// Programs that promise nothing need what no device here has; the validity tests compile them.
static std::vector<Program> promisingPrograms() {
    std::vector<Program> programs = programsIn(TARNWICK_CORPUS);
    std::erase_if(programs, [](const Program& program) {
        return program.runs.empty() && program.draws.empty() && program.expected.empty();
    });
    return programs;
}

INSTANTIATE_TEST_SUITE_P(Programs, Corpus, testing::ValuesIn(promisingPrograms()),
                         [](const auto& program) { return program.param.name; });

} // namespace tarnwick::corpus
