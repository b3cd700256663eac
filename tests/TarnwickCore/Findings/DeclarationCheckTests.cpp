#include "TarnwickCore/Findings/DeclarationCheck.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

// "line:column message", one per line.
std::string warningsOf(const std::string& source) {
    std::string text;
    for (const Diagnostic& warning : declarationWarnings(source)) {
        EXPECT_EQ(warning.severity == Severity::error, warning.message.starts_with("'float'"));
        text += (text.empty() ? "" : "\n") + std::to_string(warning.line) + ":" +
                std::to_string(warning.column) + " " + warning.message;
    }
    return text;
}

struct Row {
    std::string line, warning;
};

} // namespace

TEST(DeclarationCheck, explainsWhyAParameterIsIgnored) {
    const std::vector<Row> rows{
        {"// @param", "1:5 @param is ignored: it has no name: // @param name default min max "
                      "description"},
        {"// @param speed: 1 0 2",
         "1:11 @param is ignored: 'speed:' is not a name (letters, digits and _, no digit first)"},
        {"// @param x 1 0", "1:11 @param is ignored: the maximum of 'x' is missing: // @param name "
                            "default min max description"},
        {"// @param x 1, 0, 2", "1:13 @param is ignored: '1,' is not a number (the default); "
                                "separate numbers by blanks, and decimals by a point"},
        {"// @param x 1 low 2", "1:15 @param is ignored: 'low' is not a number (the minimum)"},
        {"  //@param x 1 2 0 Size",
         "1:18 @param is ignored: the maximum 0 is not greater than the minimum 2"},
        {"// @param x 5 0 1", "1:13 the default 5 is outside the range 0 to 1: 1 is used"},
        {"// @param float 1 0 2", "1:11 'float' is a reserved word and cannot name a parameter"},
        {"\n// @param x 1 0 2\r\n// @param x 2 0 4", "3:11 @param is ignored: line 2 declares 'x'"},
    };
    for (const auto& [line, warning] : rows)
        EXPECT_EQ(warningsOf(line), warning) << line;
}

TEST(DeclarationCheck, explainsTheOtherDirectives) {
    const std::vector<Row> rows{
        {"// @particles lots",
         "1:5 @particles is ignored: it requires one whole number and nothing "
         "else, as in // @particles 20000"},
        {"// @grid 64 cells",
         "1:5 @grid is ignored: it requires one whole number and nothing else, "
         "as in // @grid 64"},
        {"// @grid 0", "1:10 @grid 0 has no effect"},
        {"// @particles 9000000", "1:15 @particles is limited to 4000000"},
        {"// @particles 5\n// @grid 6", "1:1 @particles is ignored: line 2 makes this a grid "
                                        "episode"},
        {"// @grid 5\n// @grid 6", "2:5 @grid is ignored: line 1 has one already"},
        {"// @episode twelve Water",
         "1:13 @episode is ignored: it requires a number and a title, as "
         "in // @episode 12 Light through water"},
        {"// @still", "1:5 @still is ignored: it requires a number of seconds from 0 on"},
        {"// @length 0", "1:12 @length is ignored: it requires a number of seconds above 0"},
        {"// @variations 3, x",
         "1:16 @variations is partly ignored: it requires numbers above 0, as in "
         "// @variations 3, 5"},
        {"// @forked-from somewhere",
         "1:5 @forked-from is ignored: it requires an episode, as in // @forked-from episode-12"},
        {"// @parm x 1 0 2", "1:5 '@parm' is unknown and ignored; did you mean '@param'?"},
        {"// @Still 4", "1:5 '@Still' is unknown and ignored; did you mean '@still'?"},
        {"// @ param x 1 0 2", "1:6 @param is ignored: there is a blank after its @"},
        {"/* @param x 1 0 2 */", "1:4 this declaration is ignored: it must begin a // line"},
        {"float a; // @grid 5", "1:13 this declaration is ignored: it must begin a // line"},
    };
    for (const auto& [line, warning] : rows)
        EXPECT_EQ(warningsOf(line), warning) << line;
}

TEST(DeclarationCheck, acceptsOtherLines) {
    EXPECT_EQ(warningsOf("// @param a 1 0 2 One\n// @param b 0.5 0 1\n// @episode 12 Water\n"
                         "// @still 0\n// @variations 3, 5\n// @final Thanks | to all\n"
                         "// @particles 100\n// @forked-from episode-12\n// @author Jane\n"
                         "// write to jane@param.org\n// // @param c 1 0 2\n"
                         "/// @param x the place\n * @param x 1 of them\nfloat a; // see @param x"),
              "");
}
