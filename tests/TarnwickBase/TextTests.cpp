#include "TarnwickBase/Quoted.h"
#include "TarnwickBase/Version.h"

#include <gtest/gtest.h>

#include <regex>

using namespace tarnwick;

TEST(Quoted, replacesControlsAndShortensLongTexts) {
    EXPECT_EQ(tarnwick::quoted(""), "\"\"");
    EXPECT_EQ(tarnwick::quoted("a\x1b[31m\n\x7f\u00e9"), "\"a?[31m??\u00e9\"");
    const std::string longest(80, 'a');
    EXPECT_EQ(tarnwick::quoted(longest), "\"" + longest + "\"");
    EXPECT_EQ(tarnwick::quoted(longest + "b"), "\"" + longest + "...\"");
}

TEST(Version, namesTheReleaseAndItsBuild) {
    EXPECT_TRUE(
        std::regex_match(programName(), std::regex(R"(Tarnwick \d+\.\d+\.\d+ \(build [1-9]\d*\))")))
        << programName();
}
