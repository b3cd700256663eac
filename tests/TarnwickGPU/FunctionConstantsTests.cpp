// Functions taken from a library with values for their constants: specialised modules, and programs
// compiled with the values.
#include "TarnwickMSL/Compile.h"
#include "tests/TarnwickGPU/Gpu.h"

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr const char* program = R"(
#include <metal_stdlib>
using namespace metal;
constant float scale [[function_constant(7)]];
constant int steps [[function_constant(2)]];
constant int chosen = is_function_constant_defined(steps) ? steps : 3;
constant bool hasBias [[function_constant(4)]];
kernel void times(device float* out [[buffer(0)]]) {
    out[0] = 1;
    for (int i = 0; i < chosen; i++) out[0] *= scale;
}
kernel void plain(device float* out [[buffer(0)]]) { out[0] = 5; }
kernel void shaped(device float* out [[buffer(0)]],
                   constant float* bias [[buffer(1), function_constant(hasBias)]]) {
    out[0] = scale;
    if (hasBias) out[0] += bias[0];
}
vertex float4 corner(uint id [[vertex_id]]) {
    return float4(id == 1 ? scale : -1, id == 2 ? scale : -1, 0, 1);
}
fragment float4 paint() { return float4(scale, chosen == 4 ? 1 : 0, 0, 1); }
)";

class FunctionConstantsTest : public Gpu {
  protected:
    void SetUp() override {
        Gpu::SetUp();
        if (device)
            library = device->newLibrary(program);
    }
    // The first number of buffer 0 after one thread.
    float result(const Function& kernel) {
        const auto state = device->newComputePipelineState(kernel);
        const auto out = device->newBuffer(16);
        const float bias = 0.5f;
        auto commands = queue->commandBuffer();
        auto encoder = commands->computeCommandEncoder();
        encoder->setComputePipelineState(*state);
        encoder->setBuffer(*out, 0, 0);
        encoder->setBytes(&bias, sizeof bias, 1);
        encoder->dispatchThreads({1, 1, 1}, {1, 1, 1});
        encoder->endEncoding();
        finish(*commands);
        return *static_cast<const float*>(out->contents());
    }

    std::unique_ptr<Library> library;
};

FunctionConstantValues values(float scale) {
    FunctionConstantValues values;
    values.setConstantValue(&scale, {msl::Scalar::float_}, "scale");
    return values;
}

template <class Error, class Action> std::string sentence(const Action& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

TEST_F(FunctionConstantsTest, areListedWithTheFunctionsThatReadThem) {
    using Constants = std::vector<msl::FunctionConstant>;
    const msl::FunctionConstant scale{"scale", 7, msl::Scalar::float_, 1, true};
    const msl::FunctionConstant steps{"steps", 2, msl::Scalar::int32, 1, false};
    EXPECT_EQ(library->newFunction("times")->functionConstants(), (Constants{steps, scale}));
    EXPECT_EQ(library->newFunction("plain")->functionConstants(), Constants{});
    EXPECT_EQ(library->newFunction("times", values(2))->functionConstants(), Constants{steps});
}

TEST_F(FunctionConstantsTest, specialiseOneModuleManyTimes) {
    FunctionConstantValues given = values(2);
    EXPECT_EQ(result(*library->newFunction("times", given)), 8);
    const std::int32_t steps = 5;
    given.setConstantValue(&steps, {msl::Scalar::int32}, 2);
    EXPECT_EQ(result(*library->newFunction("times", given)), 32);
    const float scale = 3; // a later value replaces the earlier one
    given.setConstantValues(&scale, {msl::Scalar::float_}, 7, 1);
    EXPECT_EQ(result(*library->newFunction("times", given)), 243);
    EXPECT_EQ(result(*library->newFunction("plain", given)), 5);
    EXPECT_EQ(library->newFunction("none", given), nullptr);
}

TEST_F(FunctionConstantsTest, leaveOutArgumentsWhoseConditionIsFalse) {
    for (const bool hasBias : {false, true}) {
        FunctionConstantValues given = values(2);
        given.setConstantValue(&hasBias, {msl::Scalar::bool_}, 4);
        const auto function = library->newFunction("shaped", given);
        EXPECT_EQ(function->entryPoint().resources.size(), hasBias ? 2u : 1u);
        EXPECT_EQ(result(*function), hasBias ? 2.5f : 2.0f);
    }
    // A library without its program has one module for both.
    std::vector<msl::EntryPoint> compiled = msl::compile(program).entryPoints;
    const auto without = device->newLibrary(std::move(compiled));
    FunctionConstantValues given = values(2);
    const bool hasBias = false;
    given.setConstantValue(&hasBias, {msl::Scalar::bool_}, 4);
    const auto function = without->newFunction("shaped", given);
    EXPECT_EQ(function->entryPoint().resources.size(), 2u);
    EXPECT_EQ(result(*function), 2);
}

TEST_F(FunctionConstantsTest, haveValuesOfTheirOwnInEachStage) {
    const std::int32_t steps = 4;
    FunctionConstantValues given = values(0.5f);
    given.setConstantValue(&steps, {msl::Scalar::int32}, "steps");
    const auto vertex = library->newFunction("corner", values(3));
    const auto fragment = library->newFunction("paint", given);
    const auto state =
        device->newRenderPipelineState({.vertex = vertex.get(),
                                        .fragment = fragment.get(),
                                        .color = {.format = PixelFormat::rgba8Unorm}});
    const auto texture = target(2, 2);
    draw(*state, *texture);
    for (const std::uint32_t x : {0u, 1u})
        EXPECT_EQ(pixelAt(*texture, x, 1), (Pixel{128, 255, 0, 255}));
}

TEST_F(FunctionConstantsTest, areMissedInASentence) {
    const std::string missing =
        "The function 'times' requires a value for the function constant 'scale' (index 7).";
    EXPECT_EQ(sentence<LibraryError>([&] { library->newFunction("times", {}); }), missing);
    EXPECT_EQ(sentence<DeviceError>(
                  [&] { device->newComputePipelineState(*library->newFunction("times")); }),
              "The device could not make the compute pipeline of times. " + missing);
    FunctionConstantValues wrong;
    const std::array<std::uint32_t, 4> number{1, 1, 1, 1};
    wrong.setConstantValue(number.data(), {msl::Scalar::uint32, 3}, "scale");
    EXPECT_EQ(sentence<LibraryError>([&] { library->newFunction("times", wrong); }),
              "The function constant 'scale' has the type float, and its value has the type "
              "uint3.");
}

// A constant of a compilation may be an index, which no value of a module can be.
TEST_F(FunctionConstantsTest, areIndicesOfACompiledProgram) {
    const std::string text = "#include <metal_stdlib>\nusing namespace metal;\n"
                             "constant int slot [[function_constant(0)]];\n"
                             "constant int next = slot + 1;\n"
                             "kernel void check(device float* out [[buffer(slot)]],\n"
                             "                  constant float* in [[buffer(next)]]) {"
                             " out[0] = in[0] + slot; }\n";
    const auto compiled = newLibrary(
        text, {.constants = {.values = {{.name = "slot", .numbers = {{.integer = 0}}}}}});
    EXPECT_EQ(result(*compiled->newFunction("check")), 0.5f);
    EXPECT_NE(sentence<LibraryError>([&] { device->newLibrary(text); })
                  .find("program_source:5:46: error: the function constant 'slot' requires a value "
                        "when the program is compiled"),
              std::string::npos);
    EXPECT_NE(sentence<LibraryError>([&] {
                  newLibrary(text, {.constants = {.values = {{.name = "slots", .numbers = {{}}}}}});
              }).find("error: the program has no function constant 'slots'"),
              std::string::npos);
}

} // namespace

} // namespace tarnwick::tests
