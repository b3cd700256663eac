// The writer of WGSL, from modules in LLVM's text. That a browser takes its texts, and that they
// compute what Metal says, tests/web sees to.
#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Names.h"
#include "TarnwickMSL/Translation/WgslWriter.h"
#include "tests/TarnwickMSL/SpirvModules.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarnwick::msl {

static std::string written(const ShaderText& given) {
    const ParsedShader parsed = parseShader(given);
    return writeWgsl(parsed.shader).text;
}

static InterfaceVariable builtIn(InterfaceKind kind, const std::string& word) {
    return {.kind = kind,
            .global = (kind == InterfaceKind::input ? "msl.in." : "msl.out.") + word,
            .builtIn = word};
}

static InterfaceVariable buffer(InterfaceKind kind, const std::string& name) {
    return {.kind = kind,
            .global = "msl.buffer.0",
            .name = name,
            .builtIn = {},
            .elementBytes = 16,
            .isReference = kind == InterfaceKind::uniformBuffer};
}

static const InterfaceVariable uv{
    .kind = InterfaceKind::input, .global = "msl.in.uv", .builtIn = {}};
static const InterfaceVariable color{
    .kind = InterfaceKind::output, .global = "msl.out.color.0", .builtIn = {}};

// A kernel over the words of `data`.
static std::string kernel(std::string_view body,
                          std::vector<std::array<std::string_view, 3>> merges = {}) {
    const std::string code = "@msl.buffer.0 = external global i32\n"
                             "declare i32 @llvm.smax.i32(i32, i32)\n"
                             "define void @main() {\nentry:\n" +
                             std::string(body) + "\n}\n";
    return written({.code = code,
                    .stage = Stage::kernel,
                    .interface = {buffer(InterfaceKind::storageBuffer, "data")},
                    .merges = std::move(merges)});
}

static void expectLine(const std::string& text, const std::string& line) {
    EXPECT_NE(text.find(line), std::string::npos) << "No line '" << line << "' in:\n" << text;
}

TEST(WgslWriter, writesAFragmentFunctionAsAPersonWould) {
    EXPECT_EQ(written({.code = R"(
@msl.in.uv = external constant <2 x float>
@msl.buffer.0 = external constant <4 x float>
@msl.out.color.0 = external global <4 x float>
define void @main() {
entry:
  %uv = load <2 x float>, ptr @msl.in.uv
  %time = load float, ptr getelementptr (i8, ptr @msl.buffer.0, i32 8)
  %wave = call afn float @llvm.sin.f32(float %time)
  %splat.0 = insertelement <2 x float> poison, float %wave, i32 0
  %splat = shufflevector <2 x float> %splat.0, <2 x float> poison, <2 x i32> zeroinitializer
  %moved = fmul contract <2 x float> %uv, %splat
  %x = extractelement <2 x float> %moved, i32 0
  %y = extractelement <2 x float> %moved, i32 1
  %c0 = insertelement <4 x float> <float undef, float undef, float 0.5, float 1.0>, float %x, i32 0
  %c1 = insertelement <4 x float> %c0, float %y, i32 1
  store <4 x float> %c1, ptr @msl.out.color.0
  ret void
}
declare float @llvm.sin.f32(float)
)",
                       .interface = {uv, buffer(InterfaceKind::uniformBuffer, "look"), color}}),
              R"(@group(0) @binding(0) var<uniform> look: array<vec4f, 1>;

struct Inputs {
    @location(0) uv: vec2f,
}

struct Outputs {
    @location(0) color_0: vec4f,
}

@fragment
fn main(in: Inputs) -> Outputs {
    var out: Outputs;
    let moved = in.uv * sin(look[0u].z);
    out.color_0 = vec4f(moved.xy, 0.5f, 1.0f);
    return out;
}
)");
}

// The values of phis change together: here two values are exchanged in each round.
TEST(WgslWriter, assignsAllPhisOfALoopAtOnce) {
    const std::string text = kernel(R"(
  %limit = load i32, ptr @msl.buffer.0
  br label %header
header:
  %i = phi i32 [ 0, %entry ], [ %next, %latch ]
  %a = phi i32 [ 1, %entry ], [ %b, %latch ]
  %b = phi i32 [ 2, %entry ], [ %a, %latch ]
  %done = icmp uge i32 %i, %limit
  br i1 %done, label %exit, label %latch
latch:
  %next = add i32 %i, 1
  br label %header
exit:
  store i32 %a, ptr @msl.buffer.0
  ret void)",
                                    {{"header", "exit", "latch"}});
    expectLine(text, "    var i = 0u;\n    var a = 1u;\n    var b = 2u;\n    loop {\n"
                     "        if (i >= limit) {\n            break;\n        }\n");
    expectLine(text, "        let next_a = b;\n        let next_b = a;\n");
    expectLine(text, "        a = next_a;\n        b = next_b;\n    }\n    data[0u] = a;\n");
}

TEST(WgslWriter, declaresValuesWhereTheirUsersSeeThem) {
    const std::string text = kernel(R"(
  %given = load i32, ptr @msl.buffer.0
  br label %header
header:
  %square = mul i32 %given, %given
  %isLarge = icmp ugt i32 %square, 9
  br i1 %isLarge, label %exit, label %latch
latch:
  br label %header
exit:
  store i32 %square, ptr @msl.buffer.0
  ret void)",
                                    {{"header", "exit", "latch"}});
    expectLine(text, "    var square: u32;\n    loop {\n        square = given * given;\n");
    expectLine(text, "    data[0u] = square;\n");
}

// A read stays before a write that follows it.
TEST(WgslWriter, keepsTheOrderOfReadsAndWrites) {
    const std::string text = kernel(R"(
  %before = load i32, ptr @msl.buffer.0
  store i32 7, ptr @msl.buffer.0
  %at = getelementptr i32, ptr @msl.buffer.0, i32 1
  store i32 %before, ptr %at
  ret void)");
    expectLine(text, "    let before = data[0u];\n    data[0u] = 7u;\n    data[1u] = before;\n");
}

// WGSL refuses constants that it can evaluate to nothing good.
TEST(WgslWriter, hidesConstantsThatWgslRefuses) {
    const std::string text = kernel(R"(
  %a = load i32, ptr @msl.buffer.0
  %quotient = udiv i32 %a, 0
  %shifted = shl i32 %quotient, 40
  %real = bitcast i32 %shifted to float
  %sum = fadd float %real, 0x7FF0000000000000
  %bits = bitcast float %sum to i32
  %least = call i32 @llvm.smax.i32(i32 %bits, i32 -2147483648)
  store i32 %least, ptr @msl.buffer.0
  ret void)");
    expectLine(text, "var<private> constant: u32 = 0u;\n");
    expectLine(text, "var<private> constant_2: u32 = 40u;\n");
    expectLine(text, "var<private> bits: u32 = 2139095040u;\n");
    expectLine(text, "i32(-2147483648)");
}

TEST(WgslWriter, tellsSignedOperationsFromUnsignedOnes) {
    const std::string text = kernel(R"(
  %a = load i32, ptr @msl.buffer.0
  %signed = sdiv i32 %a, -3
  %unsigned = udiv i32 %a, 3
  %shifted = ashr i32 %a, 4
  %isLess = icmp slt i32 %shifted, %signed
  %one = select i1 %isLess, i32 %signed, i32 %unsigned
  store i32 %one, ptr @msl.buffer.0
  ret void)");
    expectLine(text, "let signed = i32(a) / -3i;\n");
    expectLine(text, "data[0u] = select(a / 3u, u32(signed), (i32(a) >> 4u) < signed);\n");
}

// LLVM writes differences to constants as sums, and numbers beside vectors as vectors.
TEST(WgslWriter, writesNumbersBesideVectorsAndLanesTogether) {
    const std::string text =
        written({.code = R"(
@msl.in.uv = external constant <2 x float>
@msl.buffer.0 = external constant <4 x float>
@msl.out.color.0 = external global <4 x float>
define void @main() {
  %uv = load <2 x float>, ptr @msl.in.uv
  %side = load float, ptr @msl.buffer.0
  %centred = fadd contract <2 x float> %uv, <float -0.5, float -0.5>
  %splat.0 = insertelement <2 x float> poison, float %side, i32 0
  %splat = shufflevector <2 x float> %splat.0, <2 x float> poison, <2 x i32> zeroinitializer
  %place = fdiv contract <2 x float> %centred, %splat
  %other = fmul contract <2 x float> %place, %place
  %four = shufflevector <2 x float> %other, <2 x float> %place, <4 x i32> <i32 1, i32 0, i32 2, i32 3>
  %half = shufflevector <4 x float> %four, <4 x float> <float 0.0, float 1.0, float 0.0, float 0.0>, <4 x i32> <i32 0, i32 1, i32 2, i32 5>
  store <4 x float> %half, ptr @msl.out.color.0
  ret void
}
)",
                 .interface = {uv, buffer(InterfaceKind::uniformBuffer, "look"), color}});
    expectLine(text, "    let place = (in.uv - 0.5f) / look[0u].x;\n");
    expectLine(text, " = vec4f(other.yx, place.xy);\n");
    expectLine(text, "out.color_0 = vec4f(four.xyz, 1.0f);\n");
}

// `f(a < b, c > (d))` is a template of two arguments in WGSL.
TEST(WgslWriter, closesComparisonsThatWouldBeTemplates) {
    const std::string text = kernel(R"(
  %a = load i32, ptr @msl.buffer.0
  %isLess = icmp ult i32 %a, 7
  %b = select i1 %isLess, i32 3, i32 %a
  %isMore = icmp ugt i32 %a, 9
  %c = zext i1 %isMore to i32
  %isBoth = icmp ult i32 %b, %c
  %d = select i1 %isBoth, i32 %b, i32 5
  store i32 %d, ptr @msl.buffer.0
  ret void)");
    expectLine(text, "let b = select(a, 3u, a < 7u);\n");
    expectLine(text, "data[0u] = select(5u, b, (b < u32(a > 9u)));\n");
}

// A choice between values of a variable is that variable.
TEST(WgslWriter, namesChoicesAsTheirVariable) {
    const std::string text = kernel(R"(
  %scale = load i32, ptr @msl.buffer.0
  %cmp = icmp eq i32 %scale, 7
  %add = add i32 %scale, -3
  %0 = select i1 %cmp, i32 %add, i32 %scale
  %1 = mul i32 %0, %0
  store i32 %1, ptr @msl.buffer.0
  ret void)");
    expectLine(text, "let scale_2 = select(scale, scale - 3u, scale == 7u);\n");
    expectLine(text, "data[0u] = scale_2 * scale_2;\n");
}

// An atomic integer of WGSL has one sign.
TEST(WgslWriter, comparesAtomicNumbersOfBothSigns) {
    const std::string text = kernel(R"(
  %a = atomicrmw umin ptr @msl.buffer.0, i32 9 monotonic
  %b = atomicrmw max ptr @msl.buffer.0, i32 -3 monotonic
  ret void)");
    expectLine(text, "var<storage, read_write> data: array<atomic<u32>>;\n");
    expectLine(text, " = atomicMin(&data[0u], 9u);\n");
    expectLine(text, "atomicCompareExchangeWeak(&data[0u], seen, u32(max(i32(seen), operand)));\n");
}

// All threads reach the barriers of a kernel, so those that should do nothing run on.
TEST(WgslWriter, changesMemoryOnlyForThreadsThatMay) {
    const std::string text = written({.code = R"(
@msl.buffer.0 = external global i32
@msl.loop_report = external global i32
declare void @msl.grid_mark(i1)
declare void @msl.budget_mark(i1)
define void @main() {
  %given = load i32, ptr @msl.buffer.0
  %isInside = icmp ult i32 %given, 9
  call void @msl.grid_mark(i1 %isInside)
  %isSpent = icmp ugt i32 %given, 3
  call void @msl.budget_mark(i1 %isSpent)
  store i32 1, ptr @msl.buffer.0
  store i32 1, ptr @msl.loop_report
  ret void
}
)",
                                      .stage = Stage::kernel,
                                      .interface = {buffer(InterfaceKind::storageBuffer, "data"),
                                                    {.kind = InterfaceKind::loopReport,
                                                     .global = "msl.loop_report",
                                                     .builtIn = {},
                                                     .binding = 1,
                                                     .elementBytes = 4,
                                                     .isReference = true}}});
    expectLine(text, "    let isInGrid = given < 9u;\n    var isWithinBudget = true;\n"
                     "    isWithinBudget = isWithinBudget & !(given > 3u);\n"
                     "    if (isInGrid && isWithinBudget) {\n        data[0u] = 1u;\n    }\n"
                     "    if (isInGrid) {\n        loopReport[0u] = 1u;\n    }\n");
}

// A fragment function that gives a sample of `texture` in %sample, by the sampler SAMPLER.
static EntryPoint sampling(std::string_view calls, const SamplerState& state,
                           TextureComponent component) {
    std::string code = "@msl.in.uv = external constant <2 x float>\n"
                       "@msl.out.color.0 = external global <4 x float>\n"
                       "declare <4 x float> @msl.sample.2d.f32(i32, i64, <2 x float>, <2 x i32>)\n"
                       "declare <4 x i32> @msl.sample.2d.u32(i32, i64, <2 x float>, <2 x i32>)\n"
                       "define void @main() {\n"
                       "  %uv = load <2 x float>, ptr @msl.in.uv\n" +
                       std::string(calls) +
                       "  store <4 x float> %sample, ptr @msl.out.color.0\n  ret void\n}\n";
    const std::string bits = std::to_string(static_cast<std::int64_t>(packSampler(state)));
    code.replace(code.find("SAMPLER"), 7, bits);
    const ParsedShader parsed = parseShader(
        {.code = code,
         .interface = {uv, color},
         .textures = {{.shape = TextureShape::d2, .component = component, .name = "picture"}}});
    return writeWgsl(parsed.shader);
}

static const Resource& samplerOf(const EntryPoint& entry) {
    return *std::ranges::find(entry.resources, ResourceKind::constantSampler, &Resource::kind);
}

// The host's sampler has a mode of WebGPU, and the text the border. Without levels there is no
// level to compute.
TEST(WgslWriter, samplesWithABorderThatWebGpuLacks) {
    const SamplerState zero{.s = SamplerAddress::clampToZero, .t = SamplerAddress::repeat};
    const std::string_view sample = "  %sample = call <4 x float> @msl.sample.2d.f32(i32 0, i64 "
                                    "SAMPLER, <2 x float> %uv, <2 x i32> zeroinitializer)\n";
    const EntryPoint entry = sampling(sample, zero, TextureComponent::float_);
    expectLine(entry.text,
               "out.color_0 = sampleWithBorder(picture, constantSampler, in.uv, 0.0f);");
    expectLine(entry.text, "return select(border, texel, (place.x >= 0.0f) & (place.x < size.x));");
    EXPECT_EQ(unpackSampler(samplerOf(entry).samplerState),
              (SamplerState{.t = SamplerAddress::repeat, .mip = SamplerMipFilter::nearest}));

    SamplerState levels = zero;
    levels.mag = levels.min = SamplerFilter::linear;
    levels.mip = SamplerMipFilter::linear;
    const std::string text = sampling(sample, levels, TextureComponent::float_).text;
    expectLine(text, "let level = levelOfDetail(dpdx(in.uv) * vec2f(textureDimensions(picture)), ");
    expectLine(text, "mix(sampleWithBorder(picture, constantSampler, in.uv, lower), "
                     "sampleWithBorder(picture, constantSampler, in.uv, upper), level_2 - lower);");
    expectLine(text, "return select(border, mix(border, texel, coverage), coverage > 0.0f);");
}

TEST(WgslWriter, loadsTheTexelsOfIntegersThatASamplerTakes) {
    const EntryPoint entry =
        sampling("  %word = call <4 x i32> @msl.sample.2d.u32(i32 0, i64 SAMPLER, <2 x float> %uv, "
                 "<2 x i32> <i32 1, i32 -1>)\n  %sample = bitcast <4 x i32> %word to <4 x float>\n",
                 {.s = SamplerAddress::mirroredRepeat}, TextureComponent::uint_);
    expectLine(entry.text, "bitcast<vec4f>(sampleTexels(picture, in.uv, 0.0f))");
    expectLine(entry.text, "let first = vec2i(floor(at * size)) + vec2i(1i, -1i);");
    expectLine(entry.text,
               "let at = vec2i(mirrored(place.x, size.x), clamp(place.y, 0i, size.y - 1i));");
    EXPECT_EQ(entry.text.find("sampler"), std::string::npos) << entry.text;
}

TEST(WgslWriter, refusesWhatWgslLacks) {
    const auto refusal = [](const ShaderText& text) {
        return thrownBy<TranslationError>([&] { written(text); });
    };
    EXPECT_EQ(refusal({.code = "@msl.in.barycentric_coord = external constant <3 x float>\n"
                               "@msl.out.color.0 = external global <4 x float>\n"
                               "define void @main() {\n"
                               "  %part = load float, ptr @msl.in.barycentric_coord\n"
                               "  store float %part, ptr @msl.out.color.0\n  ret void\n}\n",
                       .interface = {builtIn(InterfaceKind::input, "barycentric_coord"), color}}),
              "WGSL has no [[barycentric_coord]].");
    EXPECT_EQ(refusal({.code = "@msl.buffer.0 = external global i32\n"
                               "define void @main() {\n"
                               "  store i32 1, ptr @msl.buffer.0\n  ret void\n}\n",
                       .stage = Stage::vertex,
                       .interface = {buffer(InterfaceKind::storageBuffer, "data")}}),
              "WGSL has no vertex functions that write to buffers.");
    EXPECT_EQ(refusal({.code = "declare void @msl.ray_query_make()\n"
                               "define void @main() {\n"
                               "  call void @msl.ray_query_make()\n  ret void\n}\n",
                       .stage = Stage::kernel,
                       .interface = {}}),
              "WGSL has no ray tracing.");
}

TEST(WgslNames, areValidAndDifferent) {
    wgsl::Names names;
    EXPECT_EQ(names.make("uv"), "uv");
    EXPECT_EQ(names.make("uv"), "uv_2");
    EXPECT_EQ(names.make("sample"), "sample");
    EXPECT_EQ(names.make("texture"), "texture");
    EXPECT_EQ(names.make("filter"), "filter_1") << "a reserved word";
    EXPECT_EQ(names.make("loop"), "loop_1") << "a keyword";
    EXPECT_EQ(names.make("mix"), "mix_1") << "a function of WGSL";
    EXPECT_EQ(names.make("__hidden"), "hidden");
    EXPECT_EQ(names.make("größe"), "gre");
    EXPECT_EQ(names.make(""), "value");
    EXPECT_EQ(names.make("7"), "value_2");
}

TEST(WgslNames, areThoseOfTheProgram) {
    EXPECT_EQ(wgsl::plainName("uv.sroa.0.0.copyload.i"), "uv");
    EXPECT_EQ(wgsl::plainName("mul12.i.i"), "mul");
    EXPECT_EQ(wgsl::plainName(""), "");
}

} // namespace tarnwick::msl
