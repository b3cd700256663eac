#include "TarnwickRender/Program/ParamBuffer.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace tarnwick;

static std::vector<float> floatsOf(const ParamBuffer& buffer) {
    return {buffer.floats().begin(), buffer.floats().end()};
}

TEST(ParamBuffer, holdsTheValuesInTheOrderOfTheDeclarations) {
    const std::vector<ParamDecl> params{{"b", 1, 0, 2, ""}, {"a", 3, 0, 4, ""}};
    EXPECT_EQ(floatsOf(ParamBuffer(params, {{"a", 9}, {"c", 7}})), (std::vector<float>{1, 9}));
}

TEST(ParamBuffer, isNeverEmpty) {
    const ParamBuffer buffer({}, {{"a", 1}});
    EXPECT_EQ(floatsOf(buffer), std::vector<float>{0});
    EXPECT_EQ(buffer.length(), 4u);
}

TEST(ParamBuffer, takesAnyNumberOfParameters) {
    std::vector<ParamDecl> params;
    std::vector<float> expected(3000);
    std::iota(expected.begin(), expected.end(), 0.0f);
    for (const float value : expected)
        params.push_back({"p" + std::to_string(params.size()), value, 0, 9999, ""});
    EXPECT_EQ(floatsOf(ParamBuffer(params, {})), expected);
}
