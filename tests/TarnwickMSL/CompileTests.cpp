#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Wire.h"
#include "TarnwickMSL/WorkerProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <signal.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace tarnwick::msl;
using namespace std::chrono_literals;

namespace {

constexpr const char* head = "#include <metal_stdlib>\nusing namespace metal;\n";
const std::string good = std::string(head) +
                         "fragment float4 f(float4 p [[position]]) { return float4(sin(p.x)); }\n"
                         "kernel void k(device uint* o [[buffer(2)]],"
                         " uint i [[thread_position_in_grid]]) { o[i] = i; }\n";

TEST(Compile, givesEachEntryPointItsModuleAndBindings) {
    const Compilation found = compile(good);
    ASSERT_FALSE(found.failed) << found.messages;
    ASSERT_EQ(found.entryPoints.size(), 2u);
    EXPECT_EQ(found.entryPoints[0].name, "f");
    EXPECT_EQ(found.entryPoints[0].words.at(0), 0x07230203u);
    EXPECT_EQ(found.entryPoints[0].colorAttachments, 1u);
    ASSERT_EQ(found.entryPoints[1].resources.size(), 1u);
    EXPECT_EQ(found.entryPoints[1].resources[0].kind, ResourceKind::storageBuffer);
    EXPECT_EQ(found.entryPoints[1].resources[0].index, 2u);
    EXPECT_EQ(compile(good).entryPoints, found.entryPoints);
}

// Functions that are kept for the next compilation, and others: with records, with a table, members
// of a class and of a namespace, instances of templates, functions with one caller.
const std::string numbers = std::string(head) + R"(
struct Varyings { float4 position [[position]]; float2 uv; };
constant float3 tint = float3(0.25, 0.5, 0.75);
constant float table[9] = {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9};
struct Wave { float a; float at(float x) const { return sin(x * a) * 1.5; } };
namespace shapes { float disc(float2 p) { return length(p) - 0.35; } }
float2x2 turn(float a) { return float2x2(cos(a), -sin(a), sin(a), cos(a)) * 0.9375; }
float2 turned(float2 p) { return turn(p.x * 3.5) * p; }
float hash(float2 p) { return fract(sin(dot(p, float2(12.125, 78.25))) * 437.5); }
float once(float2 p) { return hash(p + 0.125) - 0.4375; }
float noise(float2 p) {
    float sum = once(p);
    for (int i = 0; i < 4; ++i) { sum += hash(floor(p)) * 0.625; p = p.yx * 2.03125; }
    return sum;
}
template <class T> T twice(T x) { return x * 2.25; }
float picked(int i) { return table[i] * 1.125; }
float lifted(float x, float by = 0.6875) { return x + by; }
vertex Varyings v(uint i [[vertex_id]]) {
    float2 p = float2(i & 1, i >> 1) * 1.75;
    return {float4(turn(p.y) * p, hash(p), 1.0), turned(p)};
}
kernel void k(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    out[i] = out[i + 1] * 5.5;
}
fragment float4 f(Varyings in [[stage_in]], constant float& t [[buffer(0)]]) {
    float2 p = turned(in.uv) + turned(in.uv.yx * 1.25);
    Wave wave{4.5};
    float a = noise(p) + noise(p * 7.5) + shapes::disc(p) + shapes::disc(p - 0.75);
    float b = picked(int(t)) + picked(int(p.x)) + lifted(t) + lifted(t, 0.8125) + wave.at(t);
    return float4(tint * twice(a) + twice(float3(p, wave.at(b))), 1.0);
}
)";

// Each text has one other number than the text before.
TEST(Compile, givesATextWithAnotherNumberTheModulesThatItHasAlone) {
    std::vector<std::string> texts{numbers};
    for (std::size_t place = numbers.rfind('.'); place != std::string::npos && place > 0;
         place = numbers.rfind('.', place - 1))
        if (std::isdigit(numbers[place - 1]))
            texts.push_back(std::string(texts.back()).insert(place + 1, "1"));
    EXPECT_GT(texts.size(), 30u);
    std::vector<Compilation> found;
    for (const std::string& text : texts)
        found.push_back(compile(text));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        ASSERT_FALSE(found[i].failed) << found[i].messages;
        const std::string parsed = texts[i] + std::string(1 + i % 2, '\n'); // other lines
        EXPECT_EQ(found[i].entryPoints, compile(parsed).entryPoints) << texts[i];
    }
}

TEST(Compile, namesTheFilesThatLineMarkersGive) {
    const Compilation found = compile(
        std::string(head) + "#line 1 \"shader.metal\"\nfloat4 shade2() { return 0; }\n"
                            "#line 1 \"tw_host\"\nfragment float4 f() { return shade(); }\n");
    EXPECT_TRUE(found.failed);
    EXPECT_EQ(found.messages.substr(0, 16), "tw_host:1:30: er") << found.messages;
    EXPECT_NE(found.messages.find("undeclared identifier 'shade'"), std::string::npos);
    EXPECT_NE(found.messages.find("1 error generated."), std::string::npos);
    EXPECT_EQ(compile("int x = ;").messages.substr(0, 15), "program_source:");
    EXPECT_FALSE(found.isCompilersFault);
}

// What stands before "mine" and behind "host" is not the author's to change.
TEST(Compile, warnsMoreWhereItIsAskedTo) {
    const std::string program = std::string(head) +
                                "float before() { float unused; return 1 / 2; }\n"
                                "#line 1 \"mine\"\n"
                                "float4 shade(float2 uv, uint frame) {\n"
                                "  float half_ = 1 / 2, meant = float(frame / 60), two = 4 / 2;\n"
                                "  float slow = frame / 60;\n"
                                "  float3 colour; if (frame > 9) colour = float3(1);\n"
                                "  float never;\n"
                                "  return float4(colour, half_ + meant + two + slow); }\n"
                                "float own(float x, float y) { return x; }\n"
                                "#line 1 \"host\"\n"
                                "fragment float4 f() { float unused; return shade(0, 1 / 2); }\n";
    EXPECT_EQ(compile(program).messages, "");
    const Compilation found = compile(program, {.moreWarningsIn = "mine"});
    EXPECT_FALSE(found.failed);
    for (const char* warning :
         {"mine:2:19: warning: integer division: 1 / 2 is 0",
          "mine:3:22: warning: integer division drops",
          "mine:4:22: warning: variable 'colour' is used uninitialized",
          "mine:5:9: warning: unused variable 'never'", "mine:7:26: warning: unused parameter 'y'"})
        EXPECT_NE(found.messages.find(warning), std::string::npos) << warning << found.messages;
    EXPECT_TRUE(found.messages.ends_with("\n5 warnings generated.\n")) << found.messages;
}

TEST(Compile, refusesConstantsThatItCannotCompute) {
    const std::string sum = "float sum(int n) { float s = 0; for (int i = 0; i < n; i++)"
                            " s += sin(float(i)); return s; }\n";
    const std::string use = "fragment float4 f() { return total; }\n";
    EXPECT_FALSE(compile(head + sum + "constant float total = sum(9);\n" + use).failed);
    const Compilation found = compile(head + sum + "constant float total = sum(90000000);\n" + use);
    EXPECT_TRUE(found.failed);
    EXPECT_NE(found.messages.find("constant 'total'"), std::string::npos) << found.messages;
}

// Programs that make the compiler's libraries run away, or fall.
TEST(Compile, outlivesPrograms) {
    std::string minuses = "float f(float x) { return " + std::string(400000, ' ') + "x; }\n";
    for (std::size_t i = 26; i < 400000; i += 2)
        minuses[i] = '-';
    std::string text = head;
    for (int i = 0; i < 100000; ++i)
        text += "float f" + std::to_string(i) + "(float x) { return sin(x) + cos(x); }\n";
    const std::string programs[] = {
        "template <int N, int M> struct A { static constexpr int v = A<N - 1, 2 * M>::v"
        " + A<N - 1, 2 * M + 1>::v; };\nconstant int x = A<40, 0>::v;\n",
        "template <int N> struct A { A<N + 1> next; };\nA<0> a;\n", minuses, text,
        std::string(20u << 20, ' ')};
    for (const std::string& program : programs) {
        const auto start = std::chrono::steady_clock::now();
        const Compilation found = compile(program, {.limit = 2000ms});
        EXPECT_LT(std::chrono::steady_clock::now() - start, 4s);
        EXPECT_TRUE(found.failed) << program.substr(0, 60);
        EXPECT_EQ(found.isCompilersFault, program.size() > 1000) << program.substr(0, 60);
        EXPECT_NE(found.messages.find("error: "), std::string::npos);
        EXPECT_FALSE(compile(good).failed) << program.substr(0, 60);
    }
}

std::string childrenOfThisProcess() {
    std::ifstream list("/proc/self/task/" + std::to_string(gettid()) + "/children");
    return {std::istreambuf_iterator<char>(list), {}};
}

TEST(Compile, startsAnotherWorkerForOneThatIsGone) {
    ASSERT_FALSE(compile(good).failed);
    const std::string before = childrenOfThisProcess();
    ASSERT_FALSE(before.empty());
    kill(std::stoi(before), SIGKILL);
    EXPECT_FALSE(compile(good).failed);
    const std::string after = childrenOfThisProcess();
    EXPECT_NE(after, before);
    EXPECT_EQ(std::count(after.begin(), after.end(), ' '), 1); // and no zombie beside it
}

// A compilation whose first workers are killed after they have read the request.
Compilation compileWithKills(int kills) {
    const tarnwick::TemporaryFolder folder;
    const std::filesystem::path worker = folder.path() / "worker";
    const std::string starts = "'" + (folder.path() / "starts").string() + "'";
    std::ofstream(worker) << "#!/bin/sh\necho >>" << starts << "\n[ $(wc -l <" << starts << ") -le "
                          << kills << " ] || exec '" << workerProgram().string()
                          << "' \"$@\"\nprintf . >&0\nkill -KILL $$\n";
    std::filesystem::permissions(worker, std::filesystem::perms::owner_all);
    return Compilers(worker, 1).compile(good, {});
}

TEST(Compile, triesAgainOnceIfTheWorkerIsKilled) {
    EXPECT_FALSE(compileWithKills(1).failed);
    const Compilation found = compileWithKills(2);
    EXPECT_TRUE(found.isCompilersFault);
    EXPECT_NE(found.messages.find("was killed"), std::string::npos) << found.messages;
}

TEST(Compile, servesSeveralThreads) {
    std::vector<std::thread> threads;
    std::vector<int> failed(4);
    for (int& one : failed)
        threads.emplace_back([&one] {
            for (int i = 0; i < 5; ++i)
                one += compile(good).failed;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failed, std::vector<int>(4));
}

TEST(Wire, bringsBackWhatItTookAndRefusesLess) {
    Compilation sent{.failed = false, .entryPoints = {EntryPoint{}, EntryPoint{}}, .messages = "m"};
    sent.entryPoints[1].name = "shade";
    sent.entryPoints[1].words = {1, 2, 3};
    sent.entryPoints[1].resources = {Resource{.index = 7, .samplerState = 1ull << 40}};
    sent.diagnostics = {{.kind = DiagnosticKind::note, .file = "a", .line = 3, .text = "t"}};
    sent.files = {"x.h", ""};
    sent.reflection.records = {
        {.name = "R", .members = {{.name = "m", .type = {.name = "float"}}}}};
    sent.reflection.entries = {{.name = "shade", .arguments = {{.name = "p", .index = 3}}}};
    const std::string bytes = toBytes(sent);
    const auto received = compilationFrom(bytes);
    ASSERT_TRUE(received);
    EXPECT_EQ(received->entryPoints, sent.entryPoints);
    EXPECT_EQ(received->messages, sent.messages);
    EXPECT_EQ(received->diagnostics, sent.diagnostics);
    EXPECT_EQ(received->files, sent.files);
    EXPECT_EQ(received->reflection, sent.reflection);
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_FALSE(compilationFrom(std::string_view(bytes).substr(0, size)));
    EXPECT_FALSE(compilationFrom(bytes + "x"));
}

// The worker may be in the hands of a program that found an error of Clang.
TEST(Wire, refusesValuesThatNoCodeHandles) {
    const std::string empty = toBytes(Compilation{});
    std::string unknownBool = empty;
    unknownBool[0] = 2; // Compilation::failed
    EXPECT_FALSE(compilationFrom(unknownBool));

    const Compilation one{.diagnostics = {{.kind = DiagnosticKind::note, .text = "t"}}};
    std::string unknownKind = toBytes(one);
    const std::size_t kind = unknownKind.find('\2');
    ASSERT_NE(kind, std::string::npos);
    unknownKind[kind] = 3;
    EXPECT_FALSE(compilationFrom(unknownKind));

    // A list of more elements than the bytes hold, although each could have one byte.
    std::string many = empty;
    const std::size_t count = 1 + sizeof(std::uint32_t); // of diagnostics
    many[count] = 40;
    EXPECT_FALSE(compilationFrom(many + std::string(40, '\0')));
}

} // namespace
