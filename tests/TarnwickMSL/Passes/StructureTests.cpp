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

// A function of `count` parts that follow one another, which compute %v# from %v@ and begin at
// %l#. # is the number of a part, @ that of the one before, $ that of the next; `end` ends a part.
static std::string rowOf(unsigned count, std::string_view part, std::string_view end) {
    std::string text =
        "define i32 @f(i32 %a, i32 %v0) {\n" + std::string(end) + "0:\n  br label %l1\n";
    for (unsigned k = 1; k <= count; ++k)
        for (char letter : part)
            text += letter == '#'   ? std::to_string(k)
                    : letter == '@' ? std::to_string(k - 1)
                    : letter == '$' ? std::to_string(k + 1)
                                    : std::string(1, letter);
    return text + "l" + std::to_string(count + 1) + ":\n  ret i32 %v" + std::to_string(count) +
           "\n}\n";
}

// Each of one to eight rounds.
static std::string rowOfLoops(unsigned count) {
    return rowOf(count,
                 "l#:\n"
                 "  %i# = phi i32 [0, %l@], [%n#, %l#]\n"
                 "  %s# = phi i32 [%v@, %l@], [%v#, %l#]\n"
                 "  %m# = mul i32 %s#, 747796405\n"
                 "  %v# = add i32 %m#, %a\n"
                 "  %n# = add i32 %i#, 1\n"
                 "  %e# = lshr i32 %v@, 29\n"
                 "  %c# = icmp ult i32 %i#, %e#\n"
                 "  br i1 %c#, label %l#, label %l$\n",
                 "l");
}

// Loops with long rounds around loops: a value leaves them, from the end of a round.
static std::string rowOfNests(unsigned count) {
    std::string nest = "l#:\n"
                       "  %j# = phi i32 [0, %x@], [%k#, %x#]\n"
                       "  %s# = phi i32 [%v@, %x@], [%v#, %x#]\n"
                       "  %e# = lshr i32 %s#, 29\n"
                       "  br label %m#\n"
                       "m#:\n"
                       "  %i# = phi i32 [0, %l#], [%n#, %m#]\n"
                       "  %t# = phi i32 [%s#, %l#], [%w#, %m#]\n"
                       "  %u# = mul i32 %t#, 747796405\n"
                       "  %w# = add i32 %u#, %a\n"
                       "  %n# = add i32 %i#, 1\n"
                       "  %c# = icmp ult i32 %i#, %e#\n"
                       "  br i1 %c#, label %m#, label %x#\n"
                       "x#:\n"
                       "  %q#.0 = xor i32 %w#, %s#\n";
    for (int k = 1; k <= 60; k += 2) {
        const std::string next = std::to_string(k);
        nest += "  %q#." + next + " = lshr i32 %q#." + std::to_string(k - 1) + ", 3\n  %q#." +
                std::to_string(k + 1) + " = mul i32 %q#." + next + ", 747796405\n";
    }
    nest += "  %v# = add i32 %q#.60, %w#\n"
            "  %k# = add i32 %j#, 1\n"
            "  %f# = icmp ult i32 %k#, 8\n"
            "  %g# = icmp slt i32 %v#, %a\n"
            "  %h# = and i1 %f#, %g#\n"
            "  br i1 %h#, label %l#, label %l$\n";
    return rowOf(count, nest, "x");
}

static std::ptrdiff_t loopsOf(const Twins& twins) {
    return std::count_if(
        twins.shader.structure.begin(), twins.shader.structure.end(),
        [](const auto& construct) { return construct.second.continueTarget != nullptr; });
}

TEST(Structure, breaksUpLongRowsOfLoopsAndNests) {
    Twins::budget = 60'000;
    Twins loops(rowOfLoops(20)), nests(rowOfNests(20));
    for (Twins* twins : {&loops, &nests})
        for (std::uint32_t input : {0u, 1u, 77u, 0x9e3779b9u})
            EXPECT_EQ(twins->structured(input, 5), (Outcome{twins->original(input, 5), 0}))
                << input;
    EXPECT_EQ(loopsOf(loops), 20 + 3);
    EXPECT_EQ(loopsOf(nests), 40 + 3);
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
    for (const RowEnd& end : rowEnds(llvm::LoopInfo(tree))) {
        const int loop = std::stoi(end.header->getName().drop_front().str());
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
