#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

#include <bit>

namespace tarnwick::msl::test {

// The bits of the library's fract of an x that comes from the float p.
static std::string fraction(const std::string& x) {
    return R"(define i32 @f(i32 %a, i32 %b) {
  %p = bitcast i32 %a to float
  %w = call float @llvm.floor.f32(float %p)
  %s = fmul float %p, %p
  )" + x + R"(
  %n = call float @llvm.floor.f32(float %x)
  %d = fsub float %x, %n
  %i = bitcast float %d to i32
  %m = call i32 @llvm.smin.i32(i32 %i, i32 1065353215)
  %y = bitcast i32 %m to float
  %z = fmul float %y, 2.0
  %r = bitcast float %z to i32
  ret i32 %r
}
declare float @llvm.floor.f32(float)
declare i32 @llvm.smin.i32(i32, i32))";
}

static bool isClamped(const Twins& twins) {
    return text(twins.shader).find("smin.i32(i32 %") != std::string::npos;
}

TEST(Fractions, stayBelowOne) {
    for (const char* x : {
             "%x = fadd float %p, 0.0",
             "%x = fmul float %w, 0x3E00000000000000", // 2^-31
             "%x = fsub float 0.0, %s",
             "%x = fmul float %s, -1.0",
             "%v = fmul float %w, 0x3E00000000000000\n  %x = fmul float %v, 0.5",
         }) {
        Twins twins(fraction(x));
        EXPECT_TRUE(isClamped(twins)) << x;
        for (float p : {-1e-9f, -1e-5f, -0.3f, -7.0f, 1e-5f, 0.0f, 2.5f, 1e7f}) {
            auto a = std::bit_cast<std::uint32_t>(p);
            EXPECT_EQ(twins.structured(a, 0).value, twins.original(a, 0)) << x << " " << p;
        }
    }
}

TEST(Fractions, areLeftAloneWhereNothingCanReachOne) {
    for (const char* x : {"%x = fmul float %w, 0x3FBA64C300000000", "%x = fadd float %s, 0.5",
                          "%x = fadd float %w, 4.0"})
        EXPECT_FALSE(isClamped(Twins(fraction(x)))) << x;
}

} // namespace tarnwick::msl::test
