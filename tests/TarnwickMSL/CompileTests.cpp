#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Wire.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <signal.h>
#include <string>
#include <thread>
#include <unistd.h>

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
    const std::string bytes = toBytes(sent);
    const auto received = compilationFrom(bytes);
    ASSERT_TRUE(received);
    EXPECT_EQ(received->entryPoints, sent.entryPoints);
    EXPECT_EQ(received->messages, sent.messages);
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_FALSE(compilationFrom(std::string_view(bytes).substr(0, size)));
    EXPECT_FALSE(compilationFrom(bytes + "x"));
}

} // namespace
