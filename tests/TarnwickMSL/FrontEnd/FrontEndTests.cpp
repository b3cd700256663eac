#include "tests/TarnwickMSL/FrontEnd/Parsing.h"

#include <gtest/gtest.h>

namespace tarnwick::msl {

namespace {

struct Refusal {
    const char* program;
    const char* message; // how the first line of the messages begins
};

} // namespace

TEST(FrontEnd, refusesAtTheLineWhatAShaderMayNotDo) {
    const Refusal refusals[] = {
        {"float g(int);\nfloat f(int n) { return g(n); }\nfloat g(int n) { return f(n); }",
         "shader.metal:3:25: error: recursive function call to 'f'"},
        {"void f(int* p) { delete p; }", "shader.metal:1:18: error: 'delete' is not"},
        {"void f(constant float& c) {\n c = 1; }",
         "shader.metal:2:4: error: cannot assign to variable"},
        {"constant float table[2] = {1, 2};\nvoid f() { table[0] = 3; }",
         "shader.metal:2:21: error: cannot assign to variable 'table'"},
        {"int f() { static int n; return ++n; }",
         "shader.metal:1:22: error: static local variable"},
        {"float4 f(float2 v) {\n return float4(v, 1); }", "shader.metal:2:9: error: "},
        {"bool f(short3 i) {\n return any(i < short3(1, 2)); }",
         "shader.metal:2:17: error: a vector of 3 components"},
        {"template <class T> bool f(T i) {\n return i < T(q); }",
         "shader.metal:2:15: error: use of undeclared identifier 'q'"},
        {"float f() {\n float kernel[2] = {1, 2}; return kernel[1] + q; }",
         "shader.metal:2:8: warning: 'kernel' is a keyword"},
        {"float4 f(float4 v) { return v.xyq; }",
         "shader.metal:1:30: error: illegal vector component name 'q'"},
        {"void f(packed_float3 v) { v.xx = 1; }",
         "shader.metal:1:29: error: vector is not assignable (contains duplicate"},
        {"void f(bool3 v) { v.zyz &= v; }",
         "shader.metal:1:21: error: vector is not assignable (contains duplicate"},
        {"void f(float2 v) { if (v < 1) v = 2; }",
         "shader.metal:1:24: error: value of type 'bool2' is not contextually"},
        {"float f() { return dot(1.0, float3(1)) + nothing; }",
         "shader.metal:1:42: error: use of undeclared identifier 'nothing'"},
        // Without a suggestion of the library's own names.
        {"void f() { discard; }",
         "shader.metal:1:12: error: use of undeclared identifier 'discard'\n"},
        {"#embed \"table\"\n", "shader.metal:1:8: error: 'table' file not found"},
        {"#define FILE </metal/types/vectors.h>\nconstant int a[] = {\n#embed FILE limit(2)\n};",
         "shader.metal:3:1: error: '#embed' is not supported in Metal"},
        {"#if __has_embed(\"table\" limit(1))\n#error there\n#endif\n#error none",
         "shader.metal:4:2: error: none"},
        // Uniform values.
        {"uniform<int> f(uniform<int> a, int z) {\n return a * z; }",
         "shader.metal:2:13: error: 'z' may differ between threads"},
        {"struct S { int n; int f() {\n uniform<int> b = n; return b; } };",
         "shader.metal:2:19: error: 'n' may differ between threads"},
        {"void g(float3 v) { uniform<float3> u = 0;\n u.x = v.x; u += v.x; }",
         "shader.metal:2:18: error: 'v' may differ between threads"},
        {"template <class T> void g(uniform<T> a) {}\nvoid f(float x) { g<float>(x); }",
         "shader.metal:2:28: error: 'x' may differ between threads"},
        {"struct S { uniform<device float*> p; };",
         "shader.metal:1:12: error: a pointer cannot be uniform"},
        {"uniform<> x;",
         "shader.metal:1:1: error: too few template arguments for alias template 'uniform'"},
        {"fragment float4 f(float2 p) { return 1; }",
         "shader.metal:1:26: error: invalid type 'float2'"},
        {"fragment float4 f(float4 p [[posit]]) { return 1; }",
         "shader.metal:1:30: warning: unknown attribute 'posit' ignored"},
    };
    for (const Refusal& refusal : refusals) {
        const Outcome outcome = parsed(refusal.program);
        EXPECT_TRUE(outcome.failed) << refusal.program;
        EXPECT_TRUE(outcome.messages.starts_with(refusal.message)) << refusal.program << '\n'
                                                                   << outcome.messages;
        EXPECT_TRUE(outcome.messages.ends_with("generated.\n")) << outcome.messages;
    }
}

TEST(FrontEnd, pointsNowhereIntoTheLibrary) {
    const Outcome outcome = parsed("float f(float3 v) { return clamp(v, 1, 2, 3) + mix(v); }\n"
                                   "float g(int2 v) { return v.x + sin(&v); }");
    EXPECT_TRUE(outcome.failed);
    EXPECT_EQ(outcome.messages.find("/metal/"), std::string::npos) << outcome.messages;
}

TEST(FrontEnd, printsTheErrorAfterManyWarnings) {
    std::string program;
    for (int line = 0; line < 250; ++line)
        program += "void f" + std::to_string(line) + "() [[posit]] {}\n";
    const Outcome outcome = parsed(program + "float g() { return q; }");
    EXPECT_TRUE(outcome.failed);
    EXPECT_NE(outcome.messages.find("shader.metal:200:15: warning: "), std::string::npos);
    EXPECT_EQ(outcome.messages.find("shader.metal:201:"), std::string::npos);
    EXPECT_NE(outcome.messages.find("shader.metal:251:20: error: "), std::string::npos);
    EXPECT_TRUE(outcome.messages.ends_with("\n250 warnings and 1 error generated.\n"));
}

TEST(FrontEnd, readsProgramsThatEndAnywhere) {
    const std::string program = "template <class T> struct S { T v[2]; S(T a) : v{a, T(1)} {} };\n"
                                "fragment float4 f(float4 p [[position]], constant float2* b) {\n"
                                "  float3 q(b[0], (float)p.x), r = {1, 2, 3}; q.xy *= float2(2);\n"
                                "  return float4(vec<float, 3>{q} + r, 1.0h); }\n";
    EXPECT_FALSE(parsed(program).failed) << parsed(program).messages;
    for (std::size_t size = 0; size < program.size(); ++size)
        (void)parsed(program.substr(0, size));
}

TEST(FrontEnd, readsPragmasAnywhere) {
    const std::string program = "struct S { float x; S(float a) : x(a) {} S(int a) constant; };\n"
                                "S::S(int a) constant : x(a) {}\n"
                                "kernel void k(device float3* o [[buffer(0)]]) {\n"
                                "  for (int i = 0; i < 2; ++i) o[i] = (float3)float(i); }\n";
    EXPECT_FALSE(parsed(program).failed) << parsed(program).messages;
    for (std::size_t at = 0; at < program.size(); ++at)
        if (program.find_first_of(" (:[{<;", at) == at)
            for (const std::size_t place : {at, at + 1})
                (void)parsed(std::string(program).insert(place, "\n#pragma unroll\n"));
}

TEST(FrontEnd, readsTheSignaturesOfEntryPoints) {
    const Outcome outcome = parsed(R"(
struct U { float2 size; float3 c; };
struct V { float4 position [[position]]; float2 uv; uint id [[flat]]; float s [[point_size]]; };
vertex V v(uint vid [[vertex_id]], const device U* us [[buffer(3)]]) { V o; o.uv = us[vid].size; return o; }
fragment half4 f(V in [[stage_in]], constant U& u [[buffer(1)]], constant float* xs,
                 texture2d<float> t [[texture(2)]], sampler s [[sampler(1)]],
                 texture2d<uint, access::read_write> w) {
    return half4(t.sample(s, in.uv));
}
[[kernel]] void k(device float2* out, uint2 at [[thread_position_in_grid]],
                  threadgroup float* scratch [[threadgroup(0)]]) { out[at.x] = scratch[at.y]; }
)");
    ASSERT_FALSE(outcome.failed) << outcome.messages;
    ASSERT_EQ(outcome.entries.size(), 3u);
    const EntrySignature &vertex = outcome.entries[0], &fragment = outcome.entries[1],
                         &kernel = outcome.entries[2];
    EXPECT_EQ(vertex.stage, Stage::vertex);
    EXPECT_EQ(vertex.arguments[0].values[0].attribute, "vertex_id");
    EXPECT_EQ(vertex.arguments[1].space, AddressSpace::device);
    EXPECT_EQ(vertex.arguments[1].index, 3u);
    EXPECT_EQ(vertex.arguments[1].elementBytes, 32u);
    ASSERT_EQ(vertex.results.size(), 4u);
    EXPECT_EQ(vertex.results[0].attribute, "position");
    EXPECT_EQ(vertex.results[2].interpolation, Interpolation::flat);
    EXPECT_EQ(vertex.results[3].attribute, "point_size");
    EXPECT_EQ(fragment.arguments[0].kind, ArgumentKind::stageIn);
    EXPECT_TRUE(fragment.arguments[1].isReference);
    EXPECT_EQ(fragment.arguments[2].index, 0u); // the lowest that is free
    EXPECT_EQ(fragment.arguments[3].component, TextureComponent::float_);
    EXPECT_FALSE(fragment.arguments[3].isWritten);
    EXPECT_EQ(fragment.arguments[4].kind, ArgumentKind::sampler);
    EXPECT_EQ(fragment.arguments[5].component, TextureComponent::uint_);
    EXPECT_TRUE(fragment.arguments[5].isRead && fragment.arguments[5].isWritten);
    EXPECT_EQ(fragment.results[0].scalar, Scalar::half);
    EXPECT_EQ(kernel.stage, Stage::kernel);
    EXPECT_EQ(kernel.arguments[1].values[0].width, 2u);
    EXPECT_EQ(kernel.arguments[2].kind, ArgumentKind::threadgroup);
    EXPECT_EQ(kernel.place, "shader.metal:10:17");
}

// What passes the border of a stage: members of bases, nested records, arrays and matrices.
TEST(FrontEnd, readsRecordsValueByValue) {
    const Outcome outcome = parsed(R"(
struct Base { float4 position [[position]]; };
struct Inner { half tint; float2 uv; };
struct Result : Base {
    Inner inner[2]; float3x2 turn; packed_float3 packed; uint4 id; bool2 flags;
    float2 free [[user(spare), center_no_perspective]]; float clip [[clip_distance]] [3];
};
vertex Result v() { return {}; }
)");
    ASSERT_FALSE(outcome.failed) << outcome.messages;
    // Each: name, attribute, index, offset, Scalar x width, Interpolation.
    std::string found;
    for (const StageValue& value : outcome.entries.at(0).results)
        found += value.name + " " + value.attribute + " " + std::to_string(value.index) + " at " +
                 std::to_string(value.offset) + ": " + std::to_string(int(value.scalar)) + " x " +
                 std::to_string(value.width) + ", " + std::to_string(int(value.interpolation)) +
                 "\n";
    EXPECT_EQ(found, "position position 0 at 0: 8 x 4, 0\n"
                     "inner[0].tint  0 at 16: 7 x 1, 0\n"
                     "inner[0].uv  0 at 24: 8 x 2, 0\n"
                     "inner[1].tint  0 at 32: 7 x 1, 0\n"
                     "inner[1].uv  0 at 40: 8 x 2, 0\n"
                     "turn.columns[0]  0 at 48: 8 x 2, 0\n"
                     "turn.columns[1]  0 at 56: 8 x 2, 0\n"
                     "turn.columns[2]  0 at 64: 8 x 2, 0\n"
                     "packed[0]  0 at 72: 8 x 1, 0\n"
                     "packed[1]  0 at 76: 8 x 1, 0\n"
                     "packed[2]  0 at 80: 8 x 1, 0\n"
                     "id  0 at 96: 6 x 4, 6\n"
                     "flags  0 at 112: 0 x 2, 6\n"
                     "spare  0 at 120: 8 x 2, 1\n"
                     "clip clip_distance 3 at 128: 8 x 1, 0\n");
}

TEST(FrontEnd, numbersArgumentsWithoutAnIndex) {
    const Outcome outcome =
        parsed("kernel void k(device int* a [[buffer(1)]], device int* b, texture2d<float> t,"
               " device int* c [[buffer(0)]], device int* d, array<texture2d<float>, 3> list,"
               " texture2d<float> u, sampler s) {}");
    ASSERT_FALSE(outcome.failed) << outcome.messages;
    std::vector<std::uint32_t> indices;
    for (const Argument& argument : outcome.entries.at(0).arguments)
        indices.push_back(argument.index);
    EXPECT_EQ(indices, (std::vector<std::uint32_t>{1, 2, 0, 0, 3, 1, 4, 0}));
}

} // namespace tarnwick::msl
