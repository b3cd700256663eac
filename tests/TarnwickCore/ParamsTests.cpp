#include "TarnwickCore/Params.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

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

// The edits of one number after the other, applied to `text`.
std::string changed(std::string text, const char* name, const ParamNumbers& numbers) {
    const std::vector<ParamEdit> edits = paramEdits(text, name, numbers);
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
        text.replace(edit->at, edit->length, edit->replacement);
    return text;
}

TEST(Params, changesOnlyTheNumbersOfALine) {
    const std::string text = "\xC3\xA4\r\n\t//  @param  speed 0.50\t0 2.0   How  fast 0 2.0 \r\n"
                             "// @param speed 1 0 1 another\n";
    EXPECT_EQ(changed(text, "speed", {0.5f, 0, 2}), text);
    EXPECT_EQ(changed(text, "speed", {0.5f, -1, 3}),
              "\xC3\xA4\r\n\t//  @param  speed 0.50\t-1 3.0   How  fast 0 2.0 \r\n"
              "// @param speed 1 0 1 another\n");
    EXPECT_EQ(changed(text, "speed", {0.1f, 0, 0.25f}),
              "\xC3\xA4\r\n\t//  @param  speed 0.1\t0 0.25   How  fast 0 2.0 \r\n"
              "// @param speed 1 0 1 another\n");
    const float infinite = std::numeric_limits<float>::infinity();
    for (const ParamNumbers& wrong : {ParamNumbers{0, 1, 1}, {3, 0, 2}, {0, 0, infinite}})
        EXPECT_TRUE(paramEdits(text, "speed", wrong).empty());
    EXPECT_TRUE(paramEdits(text, "spee", {1, 0, 2}).empty());
}

TEST(Params, readsTheNumbersThatItWrote) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> exponent(-30, 30), sign(-1, 1);
    const auto number = [&] { return sign(random) * std::exp2(exponent(random)); };
    for (int round = 0; round < 200; ++round) {
        const float a = number(), b = number();
        if (a == b)
            continue;
        const ParamNumbers numbers{a, std::min(a, b), std::max(a, b)};
        const auto read = ParamParser::parse(changed("// @param x 1.0 0 2e1 d", "x", numbers));
        ASSERT_EQ(read, (Decls{{"x", numbers.defaultValue, numbers.min, numbers.max, "d"}}));
    }
}
