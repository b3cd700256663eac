#include "saver/Installing/ProgramList.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

const ListedProgram rose{.name = "Rose", .command = "/home/me/tarnwick-rose --root"};
const std::string roseProgram = "/home/me/tarnwick-rose";

// As XScreenSaver's settings write it.
const std::string usual = "# XScreenSaver Preferences File\n"
                          "\n"
                          "timeout:\t0:10:00\n"
                          "selected:\t1\n"
                          "programs:\t\t\t\\\n"
                          "-\t\t\t\tmaze --root\t\t\t\\n\\\n"
                          "  GL: \"Maze 3D\"\tmaze3d --root -a 'b c'\t\\n\\\n"
                          "- default-n: \"Old\"\twebcollage --root \t\\n\\\n"
                          "\n"
                          "\n"
                          "pointerHysteresis:\t10\n";

TEST(ProgramList, addsALineAndTakesAwayExactlyThatLine) {
    const std::string added = withProgram(usual, rose);
    const std::string line = "  \"Rose\"\t/home/me/tarnwick-rose --root\t\t\\n\\\n";
    const std::size_t at = added.find(line);
    ASSERT_NE(at, std::string::npos) << added;
    EXPECT_EQ(added.substr(0, at) + added.substr(at + line.size()), usual);
    EXPECT_LT(added.find("webcollage"), at);
    EXPECT_TRUE(listsProgram(added, roseProgram));
    EXPECT_FALSE(listsProgram(usual, roseProgram));
    EXPECT_EQ(withoutProgram(added, roseProgram), usual);
}

// The line that the settings' sliders, or a person, made of it is the same program.
TEST(ProgramList, findsTheProgramWithOtherWords) {
    for (const char* line : {"- \"My rose\" /home/me/tarnwick-rose --root --param-speed -0.75",
                             "\"R\"\t\\\n\t\t/home/me/tarnwick-rose  \\\n\t--root",
                             "TrueColor: /home/me/tarnwick-rose", "'/home/me/tarnwick-rose' -root"})
        EXPECT_TRUE(
            listsProgram(std::string("programs: maze \\n\\\n") + line + "\\n\\\n", roseProgram))
            << line;
    for (const char* line : {"/home/me/tarnwick-rose2", "sh -c /home/me/tarnwick-rose",
                             "\"/home/me/tarnwick-rose\" maze"})
        EXPECT_FALSE(listsProgram(std::string("programs: ") + line + " \\n", roseProgram)) << line;
    EXPECT_FALSE(listsProgram("# programs: /home/me/tarnwick-rose \\n\n", roseProgram));
}

// Settings in other forms keep their commands, and each command stays one.
TEST(ProgramList, addsToEveryFormOfAList) {
    for (const std::string settings :
         {"", "timeout: 1", "mode: one \\", "mode: one \\\n", "programs:\n",
          "programs:\t\\\n\ntimeout: 1\n", "programs: maze -root\n",
          "programs: maze -root\ntimeout: 1\n", "programs: maze \\n\n", "programs: maze \\n\\\n",
          "programs: maze \\n\\", "programs: maze \\n gears \\\n -root\n",
          "programs: \\\n maze \\n\\\n gears"}) {
        const std::string added = withProgram(settings, rose);
        EXPECT_TRUE(listsProgram(added, roseProgram)) << added;
        for (const char* other : {"maze", "gears"})
            EXPECT_EQ(listsProgram(added, other), listsProgram(settings, other)) << added;
        const std::string twice = withProgram(added, {.name = "B", .command = "/b"});
        EXPECT_TRUE(listsProgram(twice, roseProgram) && listsProgram(twice, "/b")) << twice;
        EXPECT_FALSE(listsProgram(withoutProgram(twice, "/b"), "/b"));
        EXPECT_EQ(settings.find("timeout: 1") == std::string::npos,
                  twice.find("\ntimeout: 1") == std::string::npos && !twice.starts_with("timeout"))
            << twice;
    }
}

TEST(ProgramList, keepsTheSelectedProgramSelected) {
    const std::string added = withProgram(usual, rose);
    auto selectedWithout = [&](std::string settings, const char* number, const char* program) {
        settings.replace(settings.find("selected:\t1"), 11, std::string("selected:\t") + number);
        const std::string left = withoutProgram(settings, program);
        const std::size_t begin = left.find("selected:\t") + 10;
        return left.substr(begin, left.find('\n', begin) - begin);
    };
    EXPECT_EQ(selectedWithout(added, "2", roseProgram.c_str()), "2");
    EXPECT_EQ(selectedWithout(added, "3", roseProgram.c_str()), "-1");
    EXPECT_EQ(selectedWithout(added, "3", "maze"), "2");
    EXPECT_EQ(selectedWithout(added, "none", "maze"), "none");
}

TEST(ProgramList, writesNamesThatCannotEndTheirLine) {
    const std::string added =
        withProgram("", {.name = "a\"b\\n\nc", .command = "'/home/it'\\''s/r' --root"});
    EXPECT_TRUE(listsProgram(added, "/home/it's/r")) << added;
    EXPECT_EQ(withoutProgram(added, "/home/it's/r"), "programs:\t\\\n\n");
}

} // namespace
} // namespace tarnwick
