#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopRows.h"
#include "TarnwickMSL/Translation/Passes/Forms/Form.h"
#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "tests/TarnwickMSL/Passes/RandomFlow.h"
#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>
#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Dominators.h>

#include <algorithm>
#include <string_view>

namespace tarnwick::msl::test {

TEST(Structure, computesWhatAnyFlowComputes) {
    Twins::budget = 60'000;
    for (std::uint32_t seed = 0; seed < 150; ++seed) {
        std::string assembly = randomFlow(seed, 40 + seed % 7);
        Twins twins(assembly);
        for (std::uint32_t input : {0u, 1u, 77u, 0x9e3779b9u}) {
            Outcome expected{twins.original(input, seed), 0};
            ASSERT_EQ(twins.structured(input, seed), expected) << "seed " << seed << "\n"
                                                               << assembly << text(twins.shader);
        }
    }
}

TEST(Structure, endsWhatNeverEnds) {
    Twins::budget = 500;
    std::uint32_t stopped = 0;
    for (std::uint32_t seed = 0; seed < 60; ++seed) {
        Twins twins(randomFlow(seed, 0));
        Outcome outcome = twins.structured(seed, 1);
        stopped += outcome.report;
        if (outcome.report) // nothing of a spent invocation is written
            EXPECT_EQ(outcome.value, 0u);
        else
            EXPECT_EQ(outcome.value, twins.original(seed, 1)) << seed;
    }
    EXPECT_GT(stopped, 5u);
}

// Loops that follow one another, each of one to eight rounds.
static std::string rowOfLoops(unsigned count) {
    // # is the loop's number, @ that of the one before, $ that of the next.
    constexpr std::string_view loop = "l#:\n"
                                      "  %i# = phi i32 [0, %l@], [%n#, %l#]\n"
                                      "  %s# = phi i32 [%v@, %l@], [%v#, %l#]\n"
                                      "  %m# = mul i32 %s#, 747796405\n"
                                      "  %v# = add i32 %m#, %a\n"
                                      "  %n# = add i32 %i#, 1\n"
                                      "  %e# = lshr i32 %v@, 29\n"
                                      "  %c# = icmp ult i32 %i#, %e#\n"
                                      "  br i1 %c#, label %l#, label %l$\n";
    std::string text = "define i32 @f(i32 %a, i32 %v0) {\nl0:\n  br label %l1\n";
    for (unsigned k = 1; k <= count; ++k)
        for (char letter : loop)
            text += letter == '#'   ? std::to_string(k)
                    : letter == '@' ? std::to_string(k - 1)
                    : letter == '$' ? std::to_string(k + 1)
                                    : std::string(1, letter);
    const std::string end = std::to_string(count + 1), last = std::to_string(count);
    return text + "l" + end + ":\n  ret i32 %v" + last + "\n}\n";
}

TEST(Structure, breaksUpLongRowsOfLoops) {
    Twins::budget = 60'000;
    Twins twins(rowOfLoops(20));
    for (std::uint32_t input : {0u, 1u, 77u, 0x9e3779b9u})
        EXPECT_EQ(twins.structured(input, 5), (Outcome{twins.original(input, 5), 0})) << input;
    std::ptrdiff_t loops = std::count_if(
        twins.shader.structure.begin(), twins.shader.structure.end(),
        [](const auto& construct) { return construct.second.continueTarget != nullptr; });
    EXPECT_GT(loops, 20);
}

// The driver unrolls the odd loops, and with them what is around them.
TEST(Structure, breaksUpRowsAtLoopsThatTheDriverKeeps) {
    std::string assembly = "define void @f(i32 %a) {\nl0:\n  br label %h1\n";
    for (int k = 1; k <= 24; k++) {
        const std::string n = std::to_string(k), next = std::to_string(k + 1);
        assembly += "h" + n + ":\n  %i" + n + " = phi i32 [0, %" + (k == 1 ? "l" : "h") +
                    std::to_string(k - 1) + "], [%j" + n + ", %b" + n + "]\n  %c" + n +
                    " = icmp slt i32 %i" + n + ", " + (k % 2 == 1 ? "5" : "%a") + "\n  br i1 %c" +
                    n + ", label %b" + n + ", label %h" + next + "\nb" + n + ":\n  %j" + n +
                    " = add i32 %i" + n + ", 1\n  br label %h" + n + "\n";
    }
    llvm::LLVMContext context;
    const auto module = parse(assembly + "h25:\n  ret void\n}\n", context);
    llvm::DominatorTree tree(*module->getFunction("f"));
    int last = 0;
    for (const llvm::BasicBlock* header : rowEnds(llvm::LoopInfo(tree))) {
        const int loop = std::stoi(header->getName().drop_front().str());
        if (loop % 2 == 1)
            continue;
        EXPECT_LE(loop - last, 14); // the seventh that stays
        last = loop;
    }
    EXPECT_GT(last, 12);
}

static std::string loopTo(const char* bound, int step) {
    return std::string("define i32 @f(i32 %a, i32 %b) {\nentry:\n  br label %l\nl:\n") +
           "  %i = phi i32 [0, %entry], [%n, %l]\n  %s = phi i32 [%b, %entry], [%t, %l]\n"
           "  %t = mul i32 %s, %a\n  %n = add i32 %i, " +
           std::to_string(step) + "\n  %c = icmp ult i32 %n, " + bound +
           "\n  br i1 %c, label %l, label %e\ne:\n  ret i32 %t\n}\n";
}

TEST(LoopBudget, isSpentOnlyWhereNoEndIsKnown) {
    llvm::LLVMContext context;
    EXPECT_FALSE(lowered(loopTo("500", 1), context, flatFragment()).usesLoopBudget);
    EXPECT_FALSE(lowered(loopTo("50000", 3), context, flatFragment()).usesLoopBudget);
    EXPECT_TRUE(lowered(loopTo("5000000", 1), context, flatFragment()).usesLoopBudget);
    EXPECT_TRUE(lowered(loopTo("%a", 1), context, flatFragment()).usesLoopBudget);
}

TEST(Form, findsABranchWithoutAMerge) {
    llvm::LLVMContext context;
    ShaderModule shader = lowered(loopTo("%a", 1), context, flatFragment());
    shader.structure.clear();
    EXPECT_NE(checkForm(shader), "");
}

} // namespace tarnwick::msl::test
