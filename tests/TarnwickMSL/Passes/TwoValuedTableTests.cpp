#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

namespace tarnwick::msl::test {

// Adds up the lanes of an element of `table`, of six.
static std::string lookUp(const std::string& table) {
    return "@t = internal constant [6 x <2 x i32>] [" + table + R"(]
define i32 @f(i32 %a, i32 %b) {
  %i = urem i32 %a, 6
  %p = getelementptr inbounds [6 x <2 x i32>], ptr @t, i32 0, i32 %i
  %v = load <2 x i32>, ptr %p
  %x = extractelement <2 x i32> %v, i32 0
  %y = extractelement <2 x i32> %v, i32 1
  %z = mul i32 %y, 1000
  %r = add i32 %x, %z
  ret i32 %r
})";
}

TEST(TwoValuedTables, becomeBitsOfANumber) {
    const Twins twins(
        lookUp("<2 x i32> <i32 7, i32 3>, <2 x i32> <i32 9, i32 3>, <2 x i32> <i32 7, i32 3>, "
               "<2 x i32> <i32 7, i32 3>, <2 x i32> <i32 9, i32 3>, <2 x i32> <i32 9, i32 3>"));
    EXPECT_EQ(text(twins.shader).find("ptr @t"), std::string::npos);
    for (std::uint32_t i = 0; i < 6; i++)
        EXPECT_EQ(twins.structured(i, 0).value, twins.original(i, 0)) << i;
}

TEST(TwoValuedTables, stayTablesWithAThirdValue) {
    const Twins twins(
        lookUp("<2 x i32> <i32 7, i32 3>, <2 x i32> <i32 9, i32 3>, <2 x i32> <i32 7, i32 3>, "
               "<2 x i32> <i32 7, i32 4>, <2 x i32> <i32 9, i32 3>, <2 x i32> <i32 9, i32 5>"));
    for (std::uint32_t i = 0; i < 6; i++)
        EXPECT_EQ(twins.structured(i, 0).value, twins.original(i, 0)) << i;
}

} // namespace tarnwick::msl::test
