#include "TarnwickCore/Findings/Brackets.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

// "line:column message", or nothing.
std::string said(const std::optional<Diagnostic>& fault) {
    return fault ? std::to_string(fault->line) + ":" + std::to_string(fault->column) + " " +
                       fault->message
                 : "";
}

struct Row {
    std::string source, fault;
};

} // namespace

TEST(Brackets, areFoundIfUnpaired) {
    const std::vector<Row> rows{
        {"void f() {\n    if (a) {\n        b;\n}\nvoid g() {\n}\n",
         "2:12 '{' of line 2 is never closed"},
        {"void f() {\n  b;\n\nvoid g() {\n  c;\n}\n", "1:10 '{' of line 1 is never closed"},
        {"void f() {\n\tif (a) {\n\t\tb;\n\t}\n\nvoid g(int a,\n       int b) {\n}\n",
         "1:10 '{' of line 1 is never closed"},
        {"void f() {\n    if (a)\n        b;\n    }\n    c;\n}\n", "4:5 '}' has no matching '{'"},
        {"void f() {\n}\n}\n", "3:1 '}' has no matching '{'"},
        {"void f() {\n  a = (b;\n}\n", "2:7 '(' of line 2 is never closed"},
        {"void f() {\n  a = b[1;\n}\n", "2:8 '[' of line 2 is never closed"},
        {"void f() {\n  for (int i = 0; i < 3; ++i {\n  }\n}\n",
         "2:7 '(' of line 2 is never closed"},
        {"a);\n", "1:2 ')' has no matching '('"},
        {"a;\n/* b\n// */ c /* d", "3:9 '/*' of line 3 is never closed"},
        {"#if A\nvoid f() {\n#else\nvoid g() {\n#endif\n}\n# ifdef B\n",
         "7:1 '#if' of line 7 is never ended by #endif"},
    };
    for (const auto& [source, fault] : rows)
        EXPECT_EQ(said(unpairedBracket(source)), fault) << source;
}

TEST(Brackets, areAcceptedIfPaired) {
    for (const std::string source :
         {"// {\nfloat a[2] = {1, 2}; /* ( */\nfor (int i = 0; i < f(\"(\"); i++) { b(); }\n",
          "#if A\nvoid f() {\n#elif B\nvoid g() {\n#else\nvoid h() {\n#endif\n}\n",
          "#define BEGIN {\nvoid f() BEGIN }\n",
          "#define F(a) \\\n    do { a; } \\\n    while (0)\r\nvoid f() { F(1); }\n",
          "kernel void k(device uint* o [[buffer(0)]]) {}", ""})
        EXPECT_EQ(said(unpairedBracket(source)), "") << source;
}

TEST(Brackets, areFollowedByACompleteText) {
    EXPECT_EQ(said(unfinishedEnd("float a;\nfloat b = \n // end\n")),
              "2:9 the text ends in the middle of a declaration");
    for (const char* whole : {"float a;\n", "void f() {} // end", "#define A 1", "", "// a"})
        EXPECT_EQ(said(unfinishedEnd(whole)), "") << whole;
}
