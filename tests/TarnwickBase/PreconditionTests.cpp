#include "TarnwickBase/Precondition.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

struct Extent {
    int width = 0, height = 0;
};

std::string valueText(const Extent& extent) {
    return std::to_string(extent.width) + "x" + std::to_string(extent.height);
}

TEST(Precondition, printsTheRuleTheValuesAndThePlace) {
    precondition(true, "this rule holds");
    EXPECT_DEATH(precondition(false, "a region is within its texture", "region", Extent{640, 480},
                              "texture", Extent{320, 240}),
                 "^Violated: a region is within its texture \\(region 640x480, texture 320x240\\), "
                 "tests/TarnwickBase/PreconditionTests.cpp:1[0-9]\n$");
    EXPECT_DEATH(precondition(false, "a number is finite", "number", 0.5f, "is", false),
                 "\\(number 0.5, is false\\)");
    EXPECT_DEATH(precondition(false, "this rule holds"), "^Violated: this rule holds, tests/");
}

} // namespace
} // namespace tarnwick
