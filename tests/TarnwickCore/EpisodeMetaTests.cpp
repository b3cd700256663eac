#include "TarnwickCore/EpisodeMeta.h"

#include <gtest/gtest.h>

using namespace tarnwick;

TEST(EpisodeMeta, readsEveryKey) {
    const EpisodeMeta expected{.number = 12,
                               .title = "Light through  water",
                               .length = 90.5,
                               .variationLength = 15,
                               .variations = {3, 5, 7},
                               .still = 0,
                               .teaches = "Caustics",
                               .category = "Water",
                               .tags = "light, water",
                               .finalTitle = "Thanks",
                               .finalSummary = "See you next time | really"};
    EXPECT_EQ(EpisodeMeta::parse("int a;\r\n// @episode 12 Light through  water \n"
                                 "  //@length 9.05e1\n// @variation 15\n"
                                 "// @variations 3, 0, x, -2,5\u2003, +7,\n// @still 0\n"
                                 "//\t@teaches\tCaustics\n// @category Water\n"
                                 "// @tags light, water\n"
                                 "// @final Thanks | See you next time | really"),
              expected);
}

TEST(EpisodeMeta, ignoresInvalidValues) {
    for (const char* line :
         {"// @episode twelve Water", "// @episode 1.5 Water", "// @length 0", "// @length 1m",
          "// @variation -1", "// @still -0.5", "// @still nan", "// @variations", "/* @still 3 */",
          "// @stills 3", "// see @still 3", "// @Still 3"})
        EXPECT_EQ(EpisodeMeta::parse(line), EpisodeMeta{}) << line;
}

TEST(EpisodeMeta, usesTheLastLineOfAKey) {
    const EpisodeMeta meta =
        EpisodeMeta::parse("// @episode 3 Waves\n// @still 4\n// @tags a\n// @variations 1, 2\n"
                           "// @final One | two\n// @episode 7\n// @still soon\n// @tags  \n"
                           "// @variations none\n// @final Three");
    EXPECT_EQ(meta,
              (EpisodeMeta{.number = 7, .title = "Waves", .still = 4, .finalTitle = "Three"}));
}
