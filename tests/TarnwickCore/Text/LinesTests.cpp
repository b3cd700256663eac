#include "TarnwickCore/Diagnostics.h"
#include "TarnwickCore/Episode/FileNames.h"
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickCore/Findings.h"
#include "TarnwickCore/Findings/DeclarationCheck.h"
#include "TarnwickCore/Params.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickCore/Text/Lines.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace tarnwick;

using Strings = std::vector<std::string_view>;

TEST(Lines, endAtEveryBreakOfUnicodeAndAreNeverEmpty) {
    EXPECT_EQ(linesOf("a\nb\vc\fd\re\r\nf\u0085g\u2028h\u2029i"),
              (Strings{"a", "b", "c", "d", "e", "f", "g", "h", "i"}));
    EXPECT_EQ(linesOf("\n\n a \r\n\r\n"), Strings{" a "});
    EXPECT_TRUE(linesOf("").empty());
}

TEST(Lines, keepIncompleteBreaks) {
    EXPECT_EQ(linesOf("a\xc2"), Strings{"a\xc2"});
    EXPECT_EQ(linesOf("\xe2\x80"), Strings{"\xe2\x80"});
    EXPECT_EQ(linesOf("\u2027\u202a\u00e9"), Strings{"\u2027\u202a\u00e9"});
}

// With the address sanitizer this shows that truncated UTF-8 is never read after its end.
TEST(Lines, andTheirReadersAcceptAnyBytes) {
    std::mt19937 random(1);
    const std::vector<std::string> shards{"// @param x 1 0 2 \xe2\x80",
                                          "\xf0\x9f",
                                          "\n",
                                          "// @grid 7",
                                          "float4 shade(Inputs",
                                          "\xc2",
                                          ")",
                                          " ",
                                          "// @variations 3,\xe3\x80",
                                          "/.\xcc\x81",
                                          "float2 sound(",
                                          "shader.metal:1:2: error: \xff",
                                          "tw_host:1:2: error: expected '}'",
                                          "shader.metal:9:9: error: unknown type name 'vec3'",
                                          "@param",
                                          "// @",
                                          "{\r",
                                          "#if",
                                          "/*"};
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (int count = 0; count < 6; ++count)
            text += shards[random() % shards.size()];
        text.resize(text.size() - random() % 3);
        const AssembledShader shader = ShaderAssembler::assemble(text);
        EXPECT_NE(shader.source.find(text), std::string::npos);
        EXPECT_EQ(shader, ShaderAssembler::assemble(text));
        for (const Finding& finding : findingsOf(Episode::of(text), DiagnosticParser::parse(text)))
            EXPECT_GE(finding.diagnostic.line, 0);
        for (const Diagnostic& warning : declarationWarnings(text))
            EXPECT_GE(warning.column, 1);
        EXPECT_EQ(EpisodeMeta::parse(text), EpisodeMeta::parse(text));
        EXPECT_TRUE(FileNames::safe(text).ends_with(".metal"));
    }
}
