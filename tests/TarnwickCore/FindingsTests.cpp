#include "TarnwickCore/Findings.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

const std::string signature = "float4 shade(float2 uv, constant Uniforms& u, constant Params& p)";

std::string textOf(const std::vector<Finding>& findings) {
    std::string text;
    for (const auto& [diagnostic, hint] : findings) {
        text += text.empty() ? "" : "\n";
        text += std::to_string(diagnostic.line) + ":" + std::to_string(diagnostic.column) + " " +
                diagnostic.message;
        if (!hint.empty())
            text += " (" + hint + ")";
    }
    return text;
}

// The findings for a text of the compiler about a source.
std::string told(const std::string& source, const std::string& compilerText) {
    return textOf(findingsOf(Episode::of(source), DiagnosticParser::parse(compilerText)));
}

// A source of one line, and the message of the compiler about it.
struct Row {
    std::string line;
    int column;
    std::string message, hint;
};

} // namespace

TEST(Findings, haveHintsForUnknownNames) {
    const std::string undeclared = "use of undeclared identifier ";
    const std::vector<Row> rows{
        {"vec3 c;", 1, "unknown type name 'vec3'", "vec3 is float3 in Metal"},
        {"x = iTime;", 5, undeclared + "'iTime'", "iTime is u.time in an episode"},
        {"x = frac(y);", 5, undeclared + "'frac'; did you mean 'fract'?", "frac is fract in Metal"},
        {"uniform float t;", 1, "unknown type name 'uniform'",
         "time and resolution are u.time and u.resolution; others are parameters: // @param name "
         "default min max, then p.name"},
        {"x = atan(y, x);", 5, "no matching function for call to 'atan'",
         "atan(y, x) is atan2(y, x) in Metal"},
        {"#version 300 es", 2, "invalid preprocessing directive",
         "Metal has no #version: leave the line out"},
        {"x = 3.5 % y;", 9, "invalid operands to binary expression ('float' and 'float')",
         "% is for integers; fmod(x, y) is for floats"},
        {"void mainImage(out vec4 c, in vec2 q) {", 16, "unknown type name 'out'",
         "mainImage is " + signature + " in an episode"},
        {"x = u.iTime;", 7, "no member named 'iTime' in 'Uniforms'",
         "iTime is u.time in an episode"},
        {"x = u.speed;", 7, "no member named 'speed' in 'Uniforms'",
         "u has resolution, time, timeDelta, mouse and frame"},
        {"x = uv;", 5, undeclared + "'uv'",
         "uv is shade's argument float2 uv in every episode without a grid; other functions that "
         "use it take it too"},
        // Names that the compiler or the episode defines.
        {"x = mod(y);", 5, "no matching function for call to 'mod'", ""},
        {"x = vec3(y); y = z;", 18, undeclared + "'z'", ""},
    };
    for (const auto& [line, column, message, hint] : rows)
        EXPECT_EQ(told(line, "shader.metal:1:" + std::to_string(column) + ": error: " + message),
                  "1:" + std::to_string(column) + " " + message +
                      (hint.empty() ? "" : " (" + hint + ")"));
}

TEST(Findings, haveHintsFromTheEpisode) {
    const std::string source = "// @param size 2, 0, 4\n// @param speed 1 0 2\n"
                               "float f(float x) { return g(x) * speed * p.size; }\n"
                               "float g(float x) { return 1; }\n";
    EXPECT_EQ(told(source, "shader.metal:3:27: error: use of undeclared identifier 'g'\n"
                           "shader.metal:3:34: error: use of undeclared identifier 'speed'\n"
                           "shader.metal:3:44: error: no member named 'size' in 'Params'\n"
                           "shader.metal:3:44: error: no member named 'siz' in 'Params'\n"
                           "shader.metal:3:44: error: no member named 'siz' in 'Params'\n"),
              "3:27 use of undeclared identifier 'g' (g is defined in line 4, below its use: move "
              "it up)\n"
              "3:34 use of undeclared identifier 'speed' (speed is a parameter: p.speed)\n"
              "3:44 no member named 'size' in 'Params' (line 1: @param is ignored: '2,' is not a "
              "number (the default); separate numbers by blanks, and decimals by a point)\n"
              "3:44 no member named 'siz' in 'Params' (the parameters are speed; a line such as "
              "// @param siz 0.5 0 1 declares another)\n"
              "3:44 no member named 'siz' in 'Params'");
}

// Messages of the compiler about such texts.
TEST(Findings, reportAnUnclosedBracketOnce) {
    const std::string open = signature + " {\n    for (int i = 0; i < 3; i++) {\n"
                                         "        uv *= y;\n    return float4(uv, 0, 1);\n}\n";
    EXPECT_EQ(told(open, "shader.metal:3:15: error: use of undeclared identifier 'y'\n"
                         "tw_host:1:29: error: 'TWVertexOut' does not refer to a value\n"
                         "program_source:14:8: note: declared here\n"
                         "tw_host:1:33: error: expected expression\n"
                         "tw_host:5:2: error: expected ';' at end of declaration\n"
                         "tw_host:5:2: error: expected '}'\n"
                         "shader.metal:1:67: note: to match this '{'\n"),
              "2:33 '{' of line 2 is never closed");
    const std::string extra = signature + " {\n    if (uv.x > y)\n        uv *= 2;\n    }\n"
                                          "    return 1;\n}\n";
    EXPECT_EQ(told(extra, "shader.metal:2:16: error: use of undeclared identifier 'y'\n"
                          "shader.metal:5:5: error: expected unqualified-id\n"
                          "shader.metal:6:1: error: extraneous closing brace ('}')\n"),
              "2:16 use of undeclared identifier 'y'\n4:5 '}' has no matching '{'");
    EXPECT_EQ(told(signature + "\n    return a;\n}\n",
                   "shader.metal:1:66: error: expected ';' after top level declarator\n"
                   "shader.metal:2:12: error: use of undeclared identifier 'a'\n"
                   "shader.metal:3:1: error: extraneous closing brace ('}')\n"),
              "1:66 '{' is missing: the function's body begins here");
    EXPECT_EQ(told(signature, "tw_host:1:9: error: expected ';' after top level declarator\n"),
              "1:65 the text ends in the middle of a declaration");
    // Brackets for which the compiler reports the right place.
    const std::string good = "shader.metal:2:9: error: expected ')'\n"
                             "shader.metal:2:5: note: to match this '('\n";
    EXPECT_EQ(told("\nfoo (1;\n", good), "2:9 expected ')'\n2:5 to match this '('");
}

TEST(Findings, listTheFunctionsOfTheKind) {
    const std::string host = "tw_host:4:12: error: use of undeclared identifier ";
    const std::string note =
        "0:0 a fragment episode defines:\n" + std::string(ShaderAssembler::fragmentSignatures);
    EXPECT_EQ(told("float a;\n", host + "'shade'\n"), "0:0 'shade' is not defined\n" + note);
    EXPECT_EQ(told("void mainImage() {}\n", host + "'shade'\n"),
              "0:0 'shade' is not defined (mainImage is " + signature + " in an episode)\n" + note);
    EXPECT_EQ(told("float4 Shade() {}\n", host + "'shade'; did you mean 'Shade'?\n"
                                                 "shader.metal:1:8: note: 'Shade' declared here\n"),
              "1:8 'shade' is not defined, but 'Shade' is\n" + note);
    EXPECT_EQ(
        told("// @particles 9\n", host + "'spawn'\n" + host + "'update'\n" + host + "'ink'\n"),
        "0:0 'spawn', 'update' and 'ink' are not defined\n0:0 a particle episode defines:\n" +
            std::string(ShaderAssembler::particleSignatures));
    EXPECT_EQ(
        told("float4 shade(float2 uv) {}",
             "tw_host:4:12: error: no matching function for call to 'shade'\n"
             "shader.metal:1:8: note: candidate function not viable: requires single "
             "argument 'uv', but 3 arguments were provided\n"),
        "1:8 'shade' does not accept the arguments of the host: requires single argument 'uv', but "
        "3 arguments were provided (" +
            signature + ")");
    EXPECT_EQ(told("// float4 shade\nfloat3 shade(float2 uv) {}",
                   "tw_host:4:12: error: cannot initialize return object of type 'float4'\n"),
              "2:8 'shade' returns float3; the host requires float4 (" + signature + ")");
}

TEST(Findings, omitConsequencesOfTheAuthorsErrors) {
    EXPECT_EQ(told("float f(inout vec3 p) {\n    return p.x + q;\n}\n",
                   "shader.metal:1:9: error: unknown type name 'inout'\n"
                   "shader.metal:1:20: error: expected ')'\n"
                   "shader.metal:1:8: note: to match this '('\n"
                   "shader.metal:2:12: error: use of undeclared identifier 'p'\n"
                   "shader.metal:2:18: error: use of undeclared identifier 'q'\n"),
              "1:9 unknown type name 'inout' (inout float3 x is thread float3& x in Metal)\n"
              "2:18 use of undeclared identifier 'q'");
    EXPECT_EQ(told("float f() {\n    float a = iTime\n}\n",
                   "shader.metal:2:15: error: use of undeclared identifier 'iTime'\n"
                   "shader.metal:2:20: error: expected ';' at end of declaration\n"),
              "2:15 use of undeclared identifier 'iTime' (iTime is u.time in an episode)\n"
              "2:20 expected ';' at end of declaration");
    EXPECT_EQ(told("// @param half 1 0 2\n",
                   "program_source:4:11: error: cannot combine with previous 'float' declaration "
                   "specifier\n"),
              "1:11 'half' is a reserved word and cannot name a parameter");
    const std::string own = "shader.metal:1:16: error: unknown type name 'vec2'\n";
    const std::string host = "tw_host:4:12: error: use of undeclared identifier 'shade'\n";
    EXPECT_EQ(told("float4 shade(vec2 uv) {}", own + host),
              "1:16 unknown type name 'vec2' (vec2 is float2 in Metal)");
    EXPECT_EQ(told("", "program_source:1:1: error: the compiler ran out of time (8 s)\n"),
              "0:1 the compiler ran out of time (8 s)");
}

TEST(Findings, haveAFirstErrorInOneLine) {
    const std::string mistakes = "shader.metal:1:1: warning: unused variable 'a'\n"
                                 "shader.metal:1:3: error: unknown type name 'vec3'\n"
                                 "shader.metal:1:5: error: expected expression\n";
    const auto first = [](const std::string& compilerText) {
        return firstError(findingsOf(Episode::of("a b c"), DiagnosticParser::parse(compilerText)));
    };
    EXPECT_EQ(first(mistakes), "line 1: unknown type name 'vec3' (vec3 is float3 in Metal)");
    EXPECT_EQ(first(mistakes.substr(0, mistakes.find('\n'))), "");
    EXPECT_EQ(first("tw_host:9:9: error: use of undeclared identifier 'shade'\n"),
              "'shade' is not defined");
}
