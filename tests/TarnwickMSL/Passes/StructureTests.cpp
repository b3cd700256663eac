#include "TarnwickMSL/Translation/Passes/Dump.h"
#include "TarnwickMSL/Translation/Passes/Form.h"
#include "tests/TarnwickMSL/Passes/RandomFlow.h"
#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

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
