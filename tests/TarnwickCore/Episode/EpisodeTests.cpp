#include "TarnwickCore/Episode/Episode.h"

#include <gtest/gtest.h>

using namespace tarnwick;

TEST(Episode, isReadFromItsText) {
    const Episode episode =
        Episode::of("// @particles 9\n// @grid 4\n// @param x 1 0 2\n", "a.metal");
    EXPECT_EQ(episode.path, "a.metal");
    EXPECT_EQ(episode.kind, ShaderKind::particles); // although its program is that of a grid
    EXPECT_TRUE(episode.shader.isMesh());
    EXPECT_EQ(episode.params(), ParamParser::parse(episode.text));
}

TEST(Episode, hasALengthOnlyIfALineHasAValidOne) {
    EXPECT_EQ(Episode::of("").length(), std::nullopt);
    EXPECT_EQ(Episode::of("// @length -1\n// @still 60\n").length(), std::nullopt);
    EXPECT_EQ(Episode::of("// @length 60\n// @length none\n").length(), 60);
}
