#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

namespace tarnwick::msl::test {

static void computesTheSame(const std::string& assembly) {
    const Twins twins(assembly);
    for (std::uint32_t a : {0u, 1u, 2u, 7u, 90u})
        for (std::uint32_t b : {0u, 3u, 4u, 11u})
            EXPECT_EQ(twins.structured(a, b).value, twins.original(a, b)) << a << ", " << b;
}

// The first call of @choose is of a copy, the second one gets its body.
TEST(Inlining, keepsTheResultsOfSeveralReturns) {
    computesTheSame(R"(
define internal i32 @choose(i32 %x, i32 %y) {
entry:
  %isLess = icmp ult i32 %x, %y
  br i1 %isLess, label %less, label %other
less:
  %sum = add i32 %x, 5
  ret i32 %sum
other:
  %isSame = icmp eq i32 %x, %y
  br i1 %isSame, label %same, label %more
same:
  ret i32 %y
more:
  ret i32 17
}
define i32 @f(i32 %a, i32 %b) {
entry:
  %first = call i32 @choose(i32 %a, i32 %b)
  %isOdd = trunc i32 %first to i1
  br i1 %isOdd, label %odd, label %end
odd:
  %second = call i32 @choose(i32 %b, i32 %first)
  br label %end
end:
  %last = phi i32 [ %second, %odd ], [ %first, %entry ]
  %r = mul i32 %last, 3
  ret i32 %r
})");
}

TEST(Inlining, copiesAnArgumentThatIsPassedByValue) {
    computesTheSame(R"(
%pair = type { i32, i32 }
define internal i32 @change(ptr byval(%pair) %given) {
  %x = load i32, ptr %given
  %more = add i32 %x, 1
  store i32 %more, ptr %given
  %at = getelementptr i8, ptr %given, i32 4
  %y = load i32, ptr %at
  %sum = add i32 %more, %y
  ret i32 %sum
}
define i32 @f(i32 %a, i32 %b) {
  %pair = alloca %pair
  store i32 %a, ptr %pair
  %at = getelementptr i8, ptr %pair, i32 4
  store i32 %b, ptr %at
  %changed = call i32 @change(ptr byval(%pair) %pair)
  %x = load i32, ptr %pair
  %r = mul i32 %changed, %x
  ret i32 %r
})");
}

TEST(Inlining, takesALoopAndItsLocalIntoABlockOfALoop) {
    computesTheSame(R"(
define internal i32 @add(i32 %x, i32 %rounds) {
entry:
  %sum = alloca i32
  store i32 %x, ptr %sum
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  %now = load i32, ptr %sum
  %more = add i32 %now, %i
  store i32 %more, ptr %sum
  %next = add i32 %i, 1
  %goesOn = icmp ule i32 %next, %rounds
  br i1 %goesOn, label %loop, label %end
end:
  %last = load i32, ptr %sum
  ret i32 %last
}
define i32 @f(i32 %a, i32 %b) {
entry:
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  %value = phi i32 [ %a, %entry ], [ %added, %loop ]
  %added = call i32 @add(i32 %value, i32 %i)
  %next = add i32 %i, 1
  %goesOn = icmp ult i32 %next, %b
  br i1 %goesOn, label %loop, label %end
end:
  ret i32 %added
})");
}

// Code that nothing reaches follows the only return.
TEST(Inlining, leavesOutBlocksThatNothingReaches) {
    computesTheSame(R"(
define internal i32 @twice(i32 %x) {
  %sum = add i32 %x, %x
  ret i32 %sum
lost:
  %more = add i32 %sum, 1
  br label %lost
}
define i32 @f(i32 %a, i32 %b) {
  %x = call i32 @twice(i32 %a)
  %unused = call i32 @twice(i32 %b)
  ret i32 %x
})");
}

} // namespace tarnwick::msl::test
