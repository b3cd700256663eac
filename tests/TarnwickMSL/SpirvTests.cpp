#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "TarnwickMSL/Translation/SpirvWriter.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "tests/TarnwickMSL/SpirvModules.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarnwick::msl {

// Writes the shader, expects it to be valid, and gives it with its text.
struct Written {
    EntryPoint entry;
    std::string text;

    explicit Written(const ShaderText& given) {
        ParsedShader parsed = parseShader(given);
        entry = writeSpirv(parsed.shader);
        text = spirvText(entry.words);
        EXPECT_EQ(spirvFaults(entry.words), "") << text;
    }
    std::size_t count(std::string_view of) const {
        std::size_t number = 0;
        for (auto at = text.find(of); at != std::string::npos; at = text.find(of, at + 1))
            ++number;
        return number;
    }
};

static const InterfaceVariable uv{.kind = InterfaceKind::input, .global = "in.uv", .builtIn = {}};
static const InterfaceVariable color{
    .kind = InterfaceKind::output, .global = "out.color", .builtIn = {}};
static const InterfaceVariable uniforms{.kind = InterfaceKind::uniformBuffer,
                                        .global = "buffer.0",
                                        .builtIn = {},
                                        .binding = 32,
                                        .elementBytes = 32,
                                        .isReference = true};

static InterfaceVariable buffer(std::uint32_t index, InterfaceKind kind, std::uint64_t bytes) {
    return {.kind = kind,
            .global = "buffer." + std::to_string(index),
            .builtIn = {},
            .index = index,
            .binding = index,
            .elementBytes = bytes};
}

static InterfaceVariable builtIn(InterfaceKind kind, std::string word) {
    auto attribute = word.starts_with("in.") ? word.substr(3) : word;
    return {.kind = kind, .global = "msl." + word, .builtIn = attribute};
}

TEST(SpirvWriter, writesAFragmentFunctionWithUniformsAndALoop) {
    Written written({.code = R"(
%Uniforms = type { <2 x float>, float, float, <2 x float>, i32, i32 }
@in.uv = external global <2 x float>
@buffer.0 = external constant %Uniforms
@out.color = external global <4 x float>
define void @main() {
entry:
  %uv = load <2 x float>, ptr @in.uv
  %time = load float, ptr getelementptr (i8, ptr @buffer.0, i32 8)
  %frame = load i32, ptr getelementptr (%Uniforms, ptr @buffer.0, i32 0, i32 4)
  br label %header
header:
  %i = phi i32 [ 0, %entry ], [ %i.next, %latch ]
  %sum = phi contract float [ 0.0, %entry ], [ %sum.next, %latch ]
  %done = icmp sge i32 %i, %frame
  br i1 %done, label %exit, label %body
body:
  %f = sitofp i32 %i to float
  %s = call contract float @llvm.sin.f32(float %f)
  %positive = fcmp ogt float %s, 0.0
  br i1 %positive, label %then, label %join
then:
  %t = fmul contract float %s, %time
  br label %join
join:
  %p = phi float [ %s, %body ], [ %t, %then ]
  %sum.next = fadd contract float %sum, %p
  %i.next = add i32 %i, 1
  br label %latch
latch:
  br label %header
exit:
  %splat.0 = insertelement <2 x float> poison, float %sum, i32 0
  %splat = shufflevector <2 x float> %splat.0, <2 x float> poison, <2 x i32> zeroinitializer
  %xy = fmul contract <2 x float> %uv, %splat
  %wide = shufflevector <2 x float> %xy, <2 x float> poison, <4 x i32> <i32 0, i32 1, i32 poison, i32 poison>
  %c = insertelement <4 x float> %wide, float %time, i32 2
  %d = insertelement <4 x float> %c, float 1.0, i32 3
  store <4 x float> %d, ptr @out.color
  ret void
}
declare float @llvm.sin.f32(float)
)",
                     .interface = {uv, color, uniforms},
                     .merges = {{"header", "exit", "latch"}, {"body", "join", ""}}});
    EXPECT_EQ(written.count("OpLoopMerge"), 1u);
    EXPECT_EQ(written.count("OpSelectionMerge"), 1u);
    EXPECT_EQ(written.count("OpVectorTimesScalar"), 1u);
    EXPECT_EQ(written.count("NoContraction"), 0u);
    EXPECT_EQ(written.entry.colorAttachments, 1u);
    ASSERT_EQ(written.entry.resources.size(), 1u);
    EXPECT_EQ(written.entry.resources[0].kind, ResourceKind::uniformBuffer);
    EXPECT_EQ(written.entry.resources[0].size, 32u);
    EXPECT_EQ(written.entry.resources[0].binding, 32u);
}

TEST(SpirvWriter, writesAVertexFunctionThatReadsATableAndABuffer) {
    Written written({.code = R"(
%Particle = type { <3 x float>, float, [12 x i8] }
@msl.vertex_id = external constant i32
@buffer.0 = external global %Particle
@msl.position = external global <4 x float>
@msl.point_size = external global float
@table = internal constant [3 x <2 x float>] [<2 x float> <float 0.0, float 1.0>, <2 x float> <float 2.0, float 3.0>, <2 x float> zeroinitializer]
define void @main() {
  %id = load i32, ptr @msl.vertex_id
  %at = getelementptr %Particle, ptr @buffer.0, i32 %id
  %v3 = load <3 x float>, ptr %at
  %v = shufflevector <3 x float> %v3, <3 x float> poison, <4 x i32> <i32 0, i32 1, i32 2, i32 poison>
  %size.at = getelementptr i8, ptr %at, i32 16
  %size = load float, ptr %size.at
  %corner.at = getelementptr [3 x <2 x float>], ptr @table, i32 0, i32 %id
  %corner = load <2 x float>, ptr %corner.at
  %x = extractelement <2 x float> %corner, i32 0
  %w = insertelement <4 x float> %v, float %x, i32 3
  store <4 x float> %w, ptr @msl.position
  store float %size, ptr @msl.point_size
  ret void
}
)",
                     .stage = Stage::vertex,
                     .interface = {builtIn(InterfaceKind::input, "vertex_id"),
                                   builtIn(InterfaceKind::output, "position"),
                                   builtIn(InterfaceKind::output, "point_size"),
                                   buffer(0, InterfaceKind::storageBuffer, 48)}});
    EXPECT_TRUE(written.entry.writesPointSize);
    ASSERT_EQ(written.entry.resources.size(), 1u);
    EXPECT_FALSE(written.entry.resources[0].isWritten);
    EXPECT_EQ(written.count("NonWritable"), 1u);
    EXPECT_EQ(written.count("UMin"), 1u) << "the index into the table stays inside";
}

TEST(SpirvWriter, writesAKernelWithSharedMemoryAtomicsAndTheExactGrid) {
    Written written(
        {.code = R"(
@msl.in.thread_position_in_grid = external constant <3 x i32>
@msl.in.thread_index_in_threadgroup = external constant i32
@msl.grid = external constant <3 x i32>
@buffer.0 = external global i32
@buffer.1 = external global float
@shared = external global [64 x float]
define void @main() {
entry:
  %p = load <3 x i32>, ptr @msl.in.thread_position_in_grid
  %grid = load <3 x i32>, ptr @msl.grid
  %x = extractelement <3 x i32> %p, i64 0
  %width = extractelement <3 x i32> %grid, i64 0
  %outside = icmp uge i32 %x, %width
  br i1 %outside, label %end, label %inside
inside:
  %n = load i32, ptr @msl.in.thread_index_in_threadgroup
  %s = getelementptr [64 x float], ptr @shared, i32 0, i32 %n
  store float 1.0, ptr %s
  call void @msl.barrier.1(i32 2, i32 2)
  %old = atomicrmw add ptr @buffer.0, i32 1 monotonic
  %older = call i32 @msl.atomic_fetch_max.s32(ptr @buffer.0, i32 %old)
  %f = load float, ptr %s
  %budget = call i32 @msl.loop_budget()
  %o = getelementptr float, ptr @buffer.1, i32 %budget
  store float %f, ptr %o
  br label %end
end:
  ret void
}
declare void @msl.barrier.1(i32, i32)
declare i32 @msl.atomic_fetch_max.s32(ptr, i32)
declare i32 @msl.loop_budget()
)",
         .stage = Stage::kernel,
         .interface = {builtIn(InterfaceKind::input, "in.thread_position_in_grid"),
                       builtIn(InterfaceKind::input, "in.thread_index_in_threadgroup"),
                       {.kind = InterfaceKind::pushConstant, .global = "msl.grid", .builtIn = {}},
                       buffer(0, InterfaceKind::storageBuffer, 4),
                       buffer(1, InterfaceKind::storageBuffer, 4),
                       {.kind = InterfaceKind::workgroup,
                        .global = "shared",
                        .builtIn = {},
                        .isReference = true}},
         .merges = {{"entry", "end", ""}}});
    EXPECT_EQ(written.count("LocalSizeId"), 1u);
    EXPECT_EQ(written.count("SpecId"), 4u);
    EXPECT_EQ(written.count("OpAtomicSMax"), 1u);
    EXPECT_TRUE(written.entry.resources.at(1).isWritten);
}

// A lane that the vector lacks is undefined, also where the buffer goes on behind the vector.
TEST(SpirvWriter, indexesTheLanesOfABufferOnlyWhereTheVectorHasThem) {
    const auto written =
        [](const std::string& lane, const std::string& step) {
            return Written({.code = R"(
@msl.vertex_id = external constant i32
@buffer.0 = external global <4 x float>
@msl.position = external global <4 x float>
define void @main() {
  %id = load i32, ptr @msl.vertex_id
  %lane = )" + lane + R"(
  %element = getelementptr <4 x float>, ptr @buffer.0, i32 %id
  %at = getelementptr )" + step + R"(, i32 %lane
  %x = load float, ptr %at
  %p = insertelement <4 x float> zeroinitializer, float %x, i32 0
  store <4 x float> %p, ptr @msl.position
  ret void
}
)",
                            .stage = Stage::vertex,
                            .interface = {builtIn(InterfaceKind::input, "vertex_id"),
                                          builtIn(InterfaceKind::output, "position"),
                                          buffer(0, InterfaceKind::storageBuffer, 16)}});
        };
    const std::string asScalars = "float, ptr %element";
    const auto hasScalars = [](const Written& module) { return module.count("ArrayStride 4") > 0; };
    EXPECT_TRUE(hasScalars(written("lshr i32 %id, 1", asScalars)));
    EXPECT_TRUE(hasScalars(written("and i32 %id, 7", asScalars)));
    EXPECT_FALSE(hasScalars(written("and i32 %id, 3", asScalars)));
    EXPECT_FALSE(hasScalars(written("lshr i32 %id, 1", "<4 x float>, ptr %element, i32 0")))
        << "an index of the vector itself";
}

// %v of `lanes` lanes, gathered one by one from %x and %y with `last` as the last, and %s, which
// repeats its lane `repeated`.
static std::string gathered(unsigned lanes, unsigned last, unsigned repeated) {
    const std::string type = "<" + std::to_string(lanes) + " x float>";
    std::string code, before = "poison";
    for (unsigned i = 1; i <= lanes; ++i) {
        const unsigned lane = (last + i) % lanes;
        const std::string name = i == lanes ? "%v" : "%v" + std::to_string(i);
        code += name + " = insertelement " + type + " " + before + ", float " +
                (lane % 2 ? "%y" : "%x") + ", i32 " + std::to_string(lane) + "\n";
        before = name;
    }
    std::string mask;
    for (unsigned i = 0; i < lanes; ++i)
        mask += (i ? ", i32 " : "i32 ") + std::to_string(repeated);
    return code + "%s = shufflevector " + type + " %v, " + type + " poison, <" +
           std::to_string(lanes) + " x i32> <" + mask + ">\n";
}

// A repeated lane is a factor of its own wherever in the gathering it comes, and is there whole for
// every other user, in other blocks and in phis too.
// A device may lack the access. Padding is no member of the block, bytes of the program are.
TEST(SpirvWriter, declaresAccessToBytesOnlyForMembers) {
    const auto written = [](const std::string& gap) {
        return Written({.code = "%Record = type { float, " + gap + R"(, <4 x float> }
@buffer.0 = external constant %Record
@out.color = external global <4 x float>
define void @main() {
  %x = load <4 x float>, ptr getelementptr (i8, ptr @buffer.0, i32 16)
  store <4 x float> %x, ptr @out.color
  ret void
}
)",
                        .interface = {uniforms, color}});
    };
    EXPECT_EQ(written("[12 x i8]").count("8BitAccess"), 0u);
    EXPECT_EQ(written("<4 x i8>, [8 x i8]").count("UniformAndStorageBuffer8BitAccess"), 1u);
}

TEST(SpirvWriter, writesRepeatedLanesForAllTheirUsers) {
    struct User {
        const char* code;
        std::size_t scaled; // products with one scalar
    };
    const User users[] = {{"%r = fmul T %w, %s\nbr label %end\nend:\n", 1},
                          {"%r = fadd T %w, %s\nbr label %end\nend:\n", 0},
                          {"%p = fmul T %s, %w\n%r = fadd T %p, %s\nbr label %end\nend:\n", 1},
                          {"%r = fmul T %s, %s\nbr label %end\nend:\n", 0},
                          {"%p = fmul T %s, %v\nbr label %end\nend:\n%r = fmul T %s, %p\n", 2},
                          {"br label %end\nend:\n%r = phi T [ %s, %entry ]\n", 0}};
    for (unsigned lanes = 2; lanes <= 4; ++lanes)
        for (unsigned last = 0; last < lanes; ++last)
            for (unsigned repeated = 0; repeated < lanes; ++repeated)
                for (const User& user : users) {
                    std::string code = user.code;
                    const std::string type = "<" + std::to_string(lanes) + " x float>";
                    for (auto at = code.find('T'); at != code.npos; at = code.find('T'))
                        code.replace(at, 1, type);
                    SCOPED_TRACE(std::to_string(last) + ", " + std::to_string(repeated) + ": " +
                                 code);
                    code = R"(
@in.uv = external global <2 x float>
@out.color = external global <4 x float>
define void @main() {
entry:
  %uv = load <2 x float>, ptr @in.uv
  %x = extractelement <2 x float> %uv, i32 0
  %y = extractelement <2 x float> %uv, i32 1
  %w = shufflevector <2 x float> %uv, <2 x float> poison, <)" +
                           std::to_string(lanes) + " x i32> <i32 1, i32 0" +
                           (lanes > 2 ? ", i32 0" : "") + (lanes > 3 ? ", i32 1" : "") + ">\n" +
                           gathered(lanes, last, repeated) + code + "%l = extractelement " + type +
                           " %r, i32 1\n" + R"(
  %c = insertelement <4 x float> zeroinitializer, float %l, i32 1
  store <4 x float> %c, ptr @out.color
  ret void
})";
                    Written written({.code = code, .interface = {uv, color}});
                    EXPECT_EQ(written.count("OpVectorTimesScalar"), user.scaled) << written.text;
                }
}

// A driver counts the operations of a loop before it unrolls the loop.
TEST(SpirvWriter, writesAFractionAsOneInstruction) {
    struct Fraction {
        const char* code;
        std::size_t fractions, roundings;
    };
    const Fraction cases[] = {
        {"%r = fsub contract float %x, %f\nbr label %end\nend:\n", 1, 0},
        {"br label %end\nend:\n%r = fsub contract float %x, %f\n", 1, 0},
        {"%d = fsub contract float %x, %f\n%r = fmul float %d, %f\nbr label %end\nend:\n", 1, 1},
        {"%d = fsub contract float %x, %f\nbr label %end\nend:\n"
         "%p = phi float [ %f, %entry ]\n%r = fmul float %d, %p\n",
         1, 1},
        {"%g = call float @llvm.floor.f32(float %f)\n%r = fsub contract float %f, %g\n"
         "br label %end\nend:\n",
         1, 1},
        {"%r = fsub float %x, %f\nbr label %end\nend:\n", 0, 1},
        {"%r = fsub contract float %f, %x\nbr label %end\nend:\n", 0, 1},
        {"%r = fsub contract float %y, %f\nbr label %end\nend:\n", 0, 1}};
    for (const Fraction& one : cases) {
        Written written({.code = std::string(R"(
@in.uv = external global <2 x float>
@out.color = external global <4 x float>
define void @main() {
entry:
  %uv = load <2 x float>, ptr @in.uv
  %x = extractelement <2 x float> %uv, i32 0
  %y = extractelement <2 x float> %uv, i32 1
  %f = call float @llvm.floor.f32(float %x)
)") + one.code + R"(
  %c = insertelement <4 x float> zeroinitializer, float %r, i32 1
  store <4 x float> %c, ptr @out.color
  ret void
}
declare float @llvm.floor.f32(float))",
                         .interface = {uv, color}});
        EXPECT_EQ(written.count(" Fract "), one.fractions) << written.text;
        EXPECT_EQ(written.count(" Floor "), one.roundings) << written.text;
    }
}

// What goes wrong inside is not the program's to know.
TEST(SpirvWriter, callsItsOwnFaultsByOneName) {
    const char* code = R"(
@out.color = external global <4 x float>
define void @main() {
  %a = alloca float
  %n = ptrtoint ptr %a to i32
  %f = uitofp i32 %n to float
  %c = insertelement <4 x float> zeroinitializer, float %f, i32 0
  store <4 x float> %c, ptr @out.color
  ret void
})";
    ParsedShader parsed = parseShader({.code = code, .interface = {color}});
    try {
        writeSpirv(parsed.shader);
        FAIL() << "It is written.";
    } catch (const CompilerFault& fault) {
        EXPECT_EQ(std::string(fault.what()),
                  "The compiler has a fault and cannot translate this code. Writing it in another "
                  "way may help; please report the program.");
        EXPECT_NE(fault.detail, "");
    }
}

} // namespace tarnwick::msl
