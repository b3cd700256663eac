#include "tests/TarnwickMSL/Library/Machine.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>

namespace tarnwick::trials {

namespace {

void expectWithinBounds(const std::vector<Case>& cases) {
    const auto machine = Machine::make();
    if (!machine)
        GTEST_SKIP() << "There is no device.";
    const std::array widths{1, 3};
    machine->judgeAll(cases, 9000, widths, [](const Case& row, const Verdict& verdict) {
        EXPECT_EQ(verdict.misses, 0u)
            << row.name << ", granted " << row.bound.text << ": " << verdict.firstMiss;
    });
}

} // namespace

TEST(Library, preciseFunctionsKeepTheirBounds) {
    expectWithinBounds(preciseCases());
}
TEST(Library, fastFunctionsKeepTheirBounds) {
    expectWithinBounds(fastCases());
}
TEST(Library, commonFunctionsKeepTheirBounds) {
    expectWithinBounds(commonCases());
}
TEST(Library, functionsOfHalfKeepTheirBounds) {
    expectWithinBounds(halfCases());
}
TEST(Library, geometricFunctionsKeepTheirBounds) {
    expectWithinBounds(geometricCases());
}

TEST(Library, givesProgramConstantsTheirValues) {
    const auto machine = Machine::make();
    if (!machine)
        GTEST_SKIP() << "There is no device.";
    const auto library = machine->compile(
        "constant float table[3] = {sin(0.5), pow(2.0, 3.0), precise::atan(1.0)};\n"
        "constant float3 way = normalize(float3(1, 2, 2));\n"
        "kernel void values(device float* out [[buffer(0)]], "
        "uint i [[thread_position_in_grid]]) { out[i] = i < 3u ? table[i] : way.x; }\n");
    const auto words = machine->run(*library, "values", {}, 4, 4);
    const float wanted[] = {0.47942554f, 8, 0.78539816f, 1.0f / 3};
    for (std::size_t i = 0; i < 4; i++)
        EXPECT_NEAR(std::bit_cast<float>(words[i]), wanted[i], 1e-6f) << i;
}

} // namespace tarnwick::trials
