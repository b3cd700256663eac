// Every built-in value, in every stage and direction that its row of the front end's table allows,
// and every function of groups and memory makes a valid module.
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/FrontEnd/BuiltIns.h"
#include "TarnwickMSL/Translation/FrontEnd/Missing.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "TarnwickSpirv/Interface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace tarnwick {

namespace {

using msl::BuiltInWord;
using msl::PatchKind;
using msl::Stage;
using Element = BuiltInWord::Element;

const std::string head = "#include <metal_stdlib>\nusing namespace metal;\n";
constexpr std::array stages{Stage::vertex, Stage::fragment, Stage::kernel, Stage::object,
                            Stage::mesh};

void expectValid(const std::string& program, const msl::Target& target = {}) {
    const msl::Compilation compilation = msl::compile(head + program, {.target = target});
    EXPECT_FALSE(compilation.failed) << program << compilation.messages;
    EXPECT_FALSE(compilation.failed || compilation.entryPoints.empty()) << program;
    for (const msl::EntryPoint& entry : compilation.entryPoints)
        EXPECT_EQ(msl::spirvFaults(entry.words), "") << program << entry.name;
}

std::vector<std::string> scalars(Element element) {
    switch (element) {
    case Element::unsigned_:
        return {"uint", "ushort"};
    case Element::float_:
        return {"float"};
    case Element::bool_:
        return {"bool"};
    case Element::any:
        return {"float", "half", "int", "ushort"};
    }
    return {};
}

// A declaration of a value `x` with the attribute, and an expression that reads one number of it.
struct Declared {
    std::string text, number;
};

std::vector<Declared> declarations(const BuiltInWord& word, PatchKind patch = PatchKind::none) {
    std::string attribute(word.word);
    attribute += word.word == "color" ? "(0)" : word.word == "depth" ? "(any)" : "";
    std::uint32_t least = word.takesFewer ? 1 : word.mostLanes, most = word.mostLanes;
    if (word.word == "position_in_patch")
        least = most = patch == PatchKind::quad ? 2 : 3;
    std::vector<Declared> all;
    for (const std::string& scalar : scalars(word.element))
        for (std::uint32_t lanes = least; lanes <= most; ++lanes) {
            const std::string type = scalar + (lanes > 1 ? std::to_string(lanes) : "");
            all.push_back({type + " x [[" + attribute + "]]", lanes > 1 ? "x[0]" : "x"});
        }
    return all;
}

// An entry point `name` of the stage with the body, and with further arguments.
std::string entry(Stage stage, const std::string& name, const std::string& arguments,
                  const std::string& body) {
    const bool isOfMesh = stage == Stage::object || stage == Stage::mesh;
    const std::string begin =
        (isOfMesh ? "[[" : "") + std::string(stageName(stage)) + (isOfMesh ? "]] " : " ");
    const std::string all = name + "(device float* out [[buffer(0)]]" + arguments + ") { " + body;
    return begin + (stage == Stage::vertex ? "float4 " : "void ") + all +
           (stage == Stage::vertex ? " return 0; }\n" : " }\n");
}

std::string inputs(const BuiltInWord& word, Stage stage, PatchKind patch = PatchKind::none) {
    std::string program;
    for (const Declared& x : declarations(word, patch)) {
        const std::string number = std::to_string(program.size()), store = "out[0] = float(";
        if (patch != PatchKind::none)
            program += patch == PatchKind::quad ? "[[patch(quad, 4)]] " : "[[patch(triangle, 3)]] ";
        program += entry(stage, "f" + number, ", " + x.text, store + x.number + ");");
        if (stage == Stage::fragment)
            program += "struct R" + number + " { " + x.text + "; };\n" +
                       entry(stage, "g" + number, ", R" + number + " r [[stage_in]]",
                             store + "r." + x.number + ");");
    }
    return program;
}

std::string results(const BuiltInWord& word, Stage stage) {
    std::string program;
    for (const Declared& x : declarations(word)) {
        const std::string number = std::to_string(program.size());
        const bool needsPosition = stage == Stage::vertex && word.word != "position";
        program += "struct R" + number + " { " + x.text + ";" +
                   (needsPosition ? " float4 p [[position]];" : "") + " };\n" +
                   std::string(stageName(stage)) + " R" + number + " f" + number + "() { R" +
                   number + " r = {}; r.x = 1; return r; }\n";
    }
    return program;
}

// Mesh functions whose vertices or primitives have the value.
std::string meshResults(const BuiltInWord& word, bool isOfPrimitive) {
    std::string program;
    for (const Declared& x : declarations(word)) {
        const std::string number = std::to_string(program.size());
        const std::string record = "R" + number;
        const bool needsPosition = !isOfPrimitive && word.word != "position";
        program += "struct " + record + " { " + x.text + ";" +
                   (needsPosition ? " float4 p [[position]];" : "") + " };\n";
        for (const std::string topology : {"point", "line", "triangle"})
            program += "[[mesh]] void " + topology + number + "(mesh<" +
                       (isOfPrimitive ? "V, " + record : record + ", void") +
                       ", 8, 9, topology::" + topology +
                       "> m, uint i [[thread_index_in_threadgroup]]) { " + record +
                       " r = {}; r.x = 1; m.set_" + (isOfPrimitive ? "primitive" : "vertex") +
                       "(i, r); m.set_index(i, i); m.set_primitive_count(9); }\n";
    }
    return program.empty() ? program : "struct V { float4 p [[position]]; };\n" + program;
}

// The locations of the module's inputs or outputs, of primitives or of all others.
std::set<std::uint32_t> locationsOf(const msl::EntryPoint& entry, spv::StorageClass storage,
                                    bool areOfPrimitives) {
    const spirv::Module module(entry.words);
    std::set<spirv::Id> ofPrimitives;
    spirv::eachInstruction(module.annotations, [&](const spirv::Instruction& each) {
        if (static_cast<spv::Decoration>(each.operands[1]) == spv::Decoration::PerPrimitiveEXT)
            ofPrimitives.insert(each.operands[0]);
    });
    std::set<std::uint32_t> found;
    for (const auto& [location, variable] : spirv::locations(module, storage))
        if (ofPrimitives.contains(variable) == areOfPrimitives)
            found.insert(location);
    return found;
}

} // namespace

TEST(BuiltInValidity, ofEveryValueInEveryStage) {
    EXPECT_GT(msl::builtInWords().size(), 30u);
    for (const BuiltInWord& word : msl::builtInWords()) {
        for (const PatchKind patch : {PatchKind::triangle, PatchKind::quad})
            if (word.isInputOf(Stage::vertex, patch) && !msl::isMissingAttribute("patch"))
                expectValid(inputs(word, Stage::vertex, patch));
        for (const bool isOfPrimitive : {false, true})
            if (word.isResultOfMesh(isOfPrimitive))
                expectValid(meshResults(word, isOfPrimitive));
        for (const Stage stage : stages) {
            if (word.isInputOf(stage, PatchKind::none))
                expectValid(inputs(word, stage));
            if (stage != Stage::kernel && word.isResultOf(stage))
                expectValid(results(word, stage));
        }
    }
}

TEST(BuiltInValidity, ofSeveralIntegersThatBothAnArgumentAndAFunctionRead) {
    expectValid(entry(Stage::fragment, "f", ", uint x [[thread_index_in_simdgroup]]",
                      "out[x] = float(quad_sum(x)) + simd_shuffle_up(1.0, 1) + x;"));
}

TEST(BuiltInValidity, ofFencesAndAtomicsInEveryStage) {
    std::string body = "t.write(1u, uint2(0)); t.fence(); out[1] = t.read(uint2(0)).x;"
                       "out[2] = atomic_fetch_add_explicit(a, 1, memory_order_relaxed);"
                       "out[3] = atomic_fetch_add_explicit(b, 1.0, memory_order_relaxed);";
    for (const char* scope : {"thread", "simdgroup", "threadgroup", "device"})
        for (const char* flag : {"none", "device", "texture", "threadgroup"})
            body += std::string("atomic_thread_fence(mem_flags::mem_") + flag +
                    ", memory_order_seq_cst, thread_scope_" + scope + ");";
    for (const Stage stage : stages)
        expectValid(
            entry(stage, "f",
                  ", texture2d<uint, access::read_write> t [[texture(0)]],"
                  "device atomic_int* a [[buffer(1)]], device atomic_float* b [[buffer(2)]]",
                  body));
}

TEST(BuiltInValidity, ofBarriersAndGroupsInEveryStage) {
    std::string body = "simdgroup_barrier(mem_flags::mem_none);"
                       "simdgroup_barrier(mem_flags::mem_device | mem_flags::mem_threadgroup);"
                       "float x = out[0]; bool c = x > 2;";
    for (const char* call :
         {"sum(x)", "max(x)", "prefix_inclusive_sum(x)", "shuffle(x, 1)", "shuffle_xor(x, 1)",
          "shuffle_down(x, 1)", "broadcast(x, 1)", "broadcast_first(x)", "all(c)", "any(c)",
          "is_first()", "ballot(c).any()", "active_threads_mask().all()"})
        for (const char* group : {"simd_", "quad_"})
            body += std::string("x += float(") + group + call + ");";
    for (const Stage stage : stages)
        expectValid(entry(stage, "f", "", body + " out[1] = x;"));
    for (const Stage stage : {Stage::kernel, Stage::object, Stage::mesh})
        expectValid(entry(stage, "f", "",
                          "threadgroup_barrier(mem_flags::mem_none);"
                          "threadgroup_barrier(mem_flags::mem_device | mem_flags::mem_texture);"
                          "threadgroup_barrier(mem_flags::mem_object_data);"));
}

TEST(BuiltInValidity, ofLogs) {
    const std::string call = "os_log_default.log(";
    std::string body = call + "\"plain 100%%\");";
    for (const char* log : {"\"%d %x\", 1, i", "\"%5.2f\", 1.5h", "\"%v4hlf\", float4(i)",
                            "\"%v2hd\", short2(i)", "\"%ld\", long(i)", "\"%d\", i > 2"})
        body += call + log + ");";
    body += "if (i > 3) { for (uint n = 0; n < i; ++n) " + call + "\"%u\", n); }";
    for (const Stage stage : stages)
        expectValid(entry(stage, "f", "", "uint i = out[0];" + body), {.keepsLogs = true});
    const msl::Compilation refused =
        msl::compile(head + entry(Stage::kernel, "f", "", call + "\"%d %d\", 1);"),
                     {.target = {.keepsLogs = true}});
    EXPECT_NE(refused.messages.find("has 2 conversions, and the log has 1 values."),
              std::string::npos)
        << refused.messages;
}

TEST(BuiltInValidity, ofOrderedFragments) {
    expectValid(entry(Stage::fragment, "f",
                      ", device uint* a [[buffer(1), raster_order_group(0)]],"
                      "texture2d<uint, access::write> t [[texture(0), raster_order_group(1)]]",
                      "for (uint n = 0; n < a[0]; ++n) { if (a[n] == 7) return; a[n] += n; }"
                      "if (a[1]) discard_fragment(); t.write(a[2], uint2(0));"),
                {.ordersFragments = true});
}

// Fragment functions take what mesh functions give, by the same locations.
TEST(Meshes, giveFragmentFunctionsTheirValues) {
    const msl::Compilation made = msl::compile(
        head + "struct V { float4 p [[position]]; float2 a, b; }; struct P { float3 c; uint d; };"
               "[[mesh]] void m(mesh<V, P, 3, 1, topology::triangle> m) {"
               " m.set_vertex(0, {}); m.set_primitive(0, {}); }"
               "struct Both { P primitive; V vertex_; };"
               "fragment float4 f(Both x [[stage_in]]) {"
               " return float4(x.primitive.c, x.vertex_.b.x) * x.primitive.d; }"
               "struct Some { uint d; float2 b; };"
               "fragment float4 g(Some x [[stage_in]]) { return x.b.xyxy * x.d; }");
    ASSERT_EQ(made.entryPoints.size(), 3u) << made.messages;
    for (const bool areOfPrimitives : {false, true}) {
        const auto given =
            locationsOf(made.entryPoints[0], spv::StorageClass::Output, areOfPrimitives);
        const auto records =
            locationsOf(made.entryPoints[1], spv::StorageClass::Input, areOfPrimitives);
        const auto members =
            locationsOf(made.entryPoints[2], spv::StorageClass::Input, areOfPrimitives);
        EXPECT_EQ(given.size(), 2u);
        EXPECT_EQ(records.size(), areOfPrimitives ? 2u : 1u);
        EXPECT_EQ(members.size(), 1u);
        EXPECT_TRUE(std::ranges::includes(given, records));
        EXPECT_TRUE(std::ranges::includes(records, members));
    }
}

// Both are the one value that a function gives.
TEST(Meshes, giveTwoMembersOfOneNameTheSameValue) {
    const std::string program = "struct V { float4 p [[position]]; float2 a; };"
                                "[[mesh]] void m(mesh<V, void, 3, 1, topology::line> m) {}"
                                "struct A { float2 a; }; struct B { TYPE a; };"
                                "struct F { A x; B y; };"
                                "fragment float4 f(F x [[stage_in]]) { return x.x.a.x + x.y.a.x; }";
    const auto with = [&](const std::string& type) {
        return std::regex_replace(program, std::regex("TYPE"), type);
    };
    expectValid(with("float2"));
    EXPECT_NE(
        msl::compile(head + with("int3"))
            .messages.find("Two values of different types are the value 'a' of the stage before."),
        std::string::npos);
}

TEST(Meshes, areRefusedAtTheirLineWithoutPipelinesOfThem) {
    const std::string program = head + "kernel void k() {}\n\n[[object]] void o() {}\n";
    EXPECT_FALSE(msl::compile(program).failed);
    const msl::Compilation refused = msl::compile(program, {.target = {.hasMeshFunctions = false}});
    EXPECT_TRUE(refused.messages.starts_with(
        "program_source:5:17: error: The function 'o' requires pipelines of object and mesh "
        "functions (VK_EXT_mesh_shader), which are not available here.\n"))
        << refused.messages;
}

} // namespace tarnwick
