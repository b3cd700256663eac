#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

namespace tarnwick::msl::test {

// A loop of `rounds` over eight elements: what it does before it reads one, and the further ways
// into the loop's end and out of it.
static std::string walk(const std::string& rounds, const std::string& before,
                        const std::string& onward, const std::string& out) {
    return R"(define i32 @f(i32 %a, i32 %b) {
entry:
  %x = alloca [8 x i32]
  call void @llvm.memset.p0.i32(ptr %x, i8 3, i32 32, i1 false)
  store i32 %a, ptr %x
  %n = and i32 %b, )" +
           rounds + R"(
  br label %test
test:
  %i = phi i32 [ 0, %entry ], [ %next, %latch ]
  %s = phi i32 [ %a, %entry ], [ %sum, %latch ]
  %c = icmp ult i32 %i, %n
  br i1 %c, label %round, label %end
round:
  )" + before +
           R"(
read:
  %p = getelementptr [8 x i32], ptr %x, i32 0, i32 %i
  %v = load i32, ptr %p
  %w = add i32 %s, %v
  br label %latch
latch:
  %sum = phi i32 [ %w, %read ])" +
           onward + R"(
  %next = add i32 %i, 1
  br label %test
end:
  %r = phi i32 [ %s, %test ])" +
           out + R"(
  %y = xor i32 %r, %n
  ret i32 %y
}
declare void @llvm.memset.p0.i32(ptr, i8, i32, i1))";
}

TEST(ArrayLoops, keepTheRoundsThatReadNothingOutside) {
    std::vector<std::string> loops = {
        walk("31",
             "%o = add i32 %s, 100\n  %g = icmp ult i32 %i, 8\n"
             "  br i1 %g, label %read, label %latch",
             ", [ %o, %round ]", ""),
        walk("31",
             "%j = and i32 %a, 24\n  %k = or i32 %j, 8 ; eight in all that follows\n"
             "  %g = icmp eq i32 %i, %k\n  br i1 %g, label %stop, label %read\n"
             "stop:\n  %o = load i32, ptr %x\n  %m = mul i32 %o, 77\n  br label %end",
             "", ", [ %m, %stop ]"),
        walk("7", "%g = icmp ugt i32 %s, 90000000\n  br i1 %g, label %end, label %read", "",
             ", [ %i, %round ]"),
    };
    for (const std::string& loop : loops) {
        Twins twins(loop);
        for (std::uint32_t a : {0u, 5u, 85'000'000u})
            for (std::uint32_t b = 0; b < 12; b++)
                EXPECT_EQ(twins.structured(a, b), (Outcome{twins.original(a, b), 0}))
                    << a << " " << b << "\n"
                    << loop;
    }
}

TEST(ArrayLoops, endWithTheirArray) {
    Twins twins(walk("-1", "br label %read", "", ""));
    EXPECT_FALSE(twins.shader.usesLoopBudget);
    for (std::uint32_t b = 0; b <= 8; b++)
        EXPECT_EQ(twins.structured(4, b).value, twins.original(4, b));
    EXPECT_EQ(twins.structured(4, 100'000).value ^ 100'000u, twins.original(4, 8) ^ 8u);
}

} // namespace tarnwick::msl::test
