#include "tests/TarnwickMSL/Library/Machine.h"

#include <gtest/gtest.h>

#include <array>

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

} // namespace tarnwick::trials
