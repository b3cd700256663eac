#include "TarnwickCore/Params.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tarnwick;

using Decls = std::vector<ParamDecl>;

TEST(Params, readsADeclaration) {
    const Decls expected{{"speed", 0.6f, 0, 3, "How fast the bands drift"}};
    EXPECT_EQ(ParamParser::parse("// @param speed 0.6 0.0 3.0 How fast the bands drift"), expected);
    EXPECT_EQ(
        ParamParser::parse("int a;\n \t//@param\tspeed 0.6 +0 3e0   How fast the bands drift \t"),
        expected);
}

TEST(Params, readsNumbersInAllFormsOfStrtof) {
    EXPECT_EQ(ParamParser::parse("// @param x 0x1p-1 -INFINITY 0X.8p+1"),
              (Decls{{"x", 0.5f, -std::numeric_limits<float>::infinity(), 1, ""}}));
    EXPECT_EQ(ParamParser::parse("// @param x .5 -1. 1e999").size(), 1u);
}

// Many blanks between words: the expression once tried all pairs of them.
TEST(Params, readsLinesOfAnyLength) {
    const std::string blanks(20000, ' ');
    EXPECT_EQ(ParamParser::parse("// @param x 1 0 2 a" + blanks + "b" + blanks),
              (Decls{{"x", 1, 0, 2, "a" + blanks + "b"}}));
}

TEST(Params, clampsTheDefault) {
    EXPECT_EQ(ParamParser::parse("// @param x 5 0 1"), (Decls{{"x", 1, 0, 1, ""}}));
    EXPECT_EQ(ParamParser::parse("// @param x -5 0 1"), (Decls{{"x", 0, 0, 1, ""}}));
}

TEST(Params, ignoresInvalidDeclarations) {
    for (const char* line : {"// @param x 0.5 1 1", "// @param x 0.5 2 1", "// @param x 0.5 0 1,5",
                             "// @param x 1f 0 2", "// @param x 0.5 0 nan", "/* @param x 1 0 2 */",
                             "// @param 2x 1 0 2", "// @param x 1 0", "// @parameter x 1 0 2",
                             "// about @param x 1 0 2", "// @param \u00e9 1 0 2"})
        EXPECT_TRUE(ParamParser::parse(line).empty()) << line;
}

TEST(Params, keepsTheOrderAndTheFirstValidOfAName) {
    EXPECT_EQ(ParamParser::parse("// @param b 1 2 0\n// @param b 1 0 2 first\n// @param a 0 0 1\n"
                                 "// @param b 3 0 9 second"),
              (Decls{{"b", 1, 0, 2, "first"}, {"a", 0, 0, 1, ""}}));
}
