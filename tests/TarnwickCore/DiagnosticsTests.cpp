#include "TarnwickCore/Diagnostics.h"

#include <gtest/gtest.h>

using namespace tarnwick;

TEST(Diagnostics, distinguishTheEpisodesLinesFromGeneratedOnes) {
    const std::vector<Diagnostic> expected{
        {Severity::error, 0, 10, "unknown type name 'flot'"},
        {Severity::warning, 12, 5, "unused variable 'x'"},
        {Severity::note, 7, 1, "declared here"},
        {Severity::error, 0, 12, "use of undeclared identifier 'shade'"},
        {Severity::error, 0, 1, "x "},
        {Severity::error, 3, 0, ""},
    };
    EXPECT_EQ(DiagnosticParser::parse("program_source:3:10: error: unknown type name 'flot'\n"
                                      "flot x;\n         ^\n"
                                      "shader.metal:12:5: warning: unused variable 'x'\r\n"
                                      "/tmp/x/shader.metal:7:1: note: declared here\n"
                                      "tw_host:4:12: error: use of undeclared identifier 'shade'\n"
                                      "shader.metal:99999999999999999999:1: error: x \n"
                                      "shader.metal:3:99999999999999999999: error: \n"
                                      "other.metal:3:1: error: y\n"
                                      "4 errors generated.\n"),
              expected);
    EXPECT_TRUE(DiagnosticParser::parse("").empty());
}

TEST(Diagnostics, haveAnId) {
    const Diagnostic diagnostic{Severity::error, 12, 5, "use of undeclared identifier 'foo'"};
    EXPECT_EQ(diagnostic.id(), "error:12:5:use of undeclared identifier 'foo'");
}
