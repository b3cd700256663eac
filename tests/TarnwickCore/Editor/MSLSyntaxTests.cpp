#include "TarnwickCore/Editor/MSLSyntax.h"
#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/UTF8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

using namespace tarnwick;
using namespace std::string_view_literals;

namespace {

// "number 4+2; type 7+5": kinds, locations and lengths.
std::string tokensOf(std::string_view text) {
    std::string list;
    for (const auto& [kind, range] : MSLSyntax::tokens(text))
        list += (list.empty() ? "" : "; ") + std::string(rawValue(kind)) + " " +
                std::to_string(range.location) + "+" + std::to_string(range.length);
    return list;
}

struct Row {
    std::string_view text;
    std::string tokens;
};

void holds(const std::vector<Row>& rows) {
    for (const auto& [text, tokens] : rows)
        EXPECT_EQ(tokensOf(text), tokens) << text;
}

// Bytes that begin, continue and break every kind of token and character.
std::string randomText(std::mt19937& random) {
    static constexpr std::string_view bytes =
        "/*\"\\\n\r\t #[]@.eE+-_af0 9\xc3\xa9\xf0\x9f\x98\x80\xe2\x80\xa8\xed\xa0\x80\xff\0"sv;
    std::string text(random() % 24, ' ');
    for (char& byte : text)
        byte = bytes[random() % bytes.size()];
    return text;
}

} // namespace

TEST(MSLSyntax, knowsItsWords) {
    EXPECT_EQ(MSLSyntax::keywords().size(), 34u);
    EXPECT_EQ(MSLSyntax::types().size(), 22u + 27u + 18u);
    for (const std::string& word : MSLSyntax::keywords())
        EXPECT_EQ(tokensOf(word), "keyword 0+" + std::to_string(word.size())) << word;
    for (const std::string& word : MSLSyntax::types())
        EXPECT_EQ(tokensOf(word), "type 0+" + std::to_string(word.size())) << word;
    holds({{"double float5 bool2x2 Float2 _if if_ if2 float2x5 half1x2 uniforms", ""},
           {"f(half3)", "type 2+5"}});
}

TEST(MSLSyntax, distinguishesHeadersAndComments) {
    holds({{"// @param speed 0.6 0 3 Speed\nx", "header 0+29; headerKey 3+6"},
           {"x; //@episode-2_a! 3", "header 3+17; headerKey 5+12"},
           {"//\t @_", "header 0+6; headerKey 4+2"},
           {"// hello @param\r\n/// @param\n//@1\n// @",
            "comment 0+16; comment 17+10; comment 28+4; comment 33+4"},
           {"//\n@a", "comment 0+2"},
           {"a /* // @b\n*/ if /*/ *", "comment 2+11; keyword 14+2; comment 17+5"}});
}

TEST(MSLSyntax, findsDirectivesOnlyWhereALineBegins) {
    holds({{"#define X 1 // if\nx #ok\n \t\r#if", "preprocessor 0+17; preprocessor 27+3"},
           {"/*\n*/ #ok\n#if", "comment 0+5; preprocessor 10+3"},
           {"\"a\n#ok", "string 0+3"}});
}

TEST(MSLSyntax, endsStringsAttributesAndNumbers) {
    holds({{R"("a\"b" "\\" if)", "string 0+6; string 7+4; keyword 12+2"},
           {"\"a\\\nb\nif", "string 0+6; keyword 6+2"},
           {"\"a\\", "string 0+3"},
           {"[[position]] a[i] [[ ]a] ]]]", "attribute 0+12; attribute 18+9"},
           {"[[a\nif [[]", "attribute 0+3; keyword 4+2; attribute 7+3"},
           {"1.5e-3f 0x1F .5 a.x 1+2 7E+1-1", "number 0+7; number 8+4; number 13+2; number 20+1; "
                                              "number 22+1; number 24+4; number 29+1"},
           {"x = a / b * c;", ""}});
}

TEST(MSLSyntax, countsCodeUnits) {
    holds({{"// \xc3\xa9\nif", "comment 0+4; keyword 5+2"},
           {"\xf0\x9f\x98\x80 if", "keyword 3+2"},
           {"// @a \xf0\x9f\x98\x80\nif", "header 0+8; headerKey 3+2; keyword 9+2"},
           {"if\xc3\xa9if", "keyword 0+2; keyword 3+2"},
           // A maximal subpart of a character is one U+FFFD: two bytes of three, each byte of a
           // surrogate.
           {"\xe2\x80if\xed\xa0\x80if\xff", "keyword 1+2; keyword 6+2"}});
    UTF16Cursor cursor("a\xf0\x9f\x98\x80z");
    EXPECT_EQ(cursor.byteOf(2), 1u); // the second unit of the pair
    EXPECT_EQ(cursor.byteOf(3), 5u);
    EXPECT_EQ(cursor.byteOf(99), 6u);
    EXPECT_EQ(cursor.unitOf(1), 1u);
}

TEST(MSLSyntax, readsInvalidUTF8AsItsReplacement) {
    std::mt19937 random(5);
    for (int round = 0; round < 20000; ++round) {
        const std::string text = randomText(random), read = wellFormedUTF8(text);
        const auto tokens = MSLSyntax::tokens(text);
        ASSERT_EQ(tokens, MSLSyntax::tokens(read)) << read;
        const auto characters = charactersOf(text);
        ASSERT_EQ(read, std::accumulate(characters.begin(), characters.end(), std::string()));
        std::size_t end = 0;
        for (const auto& [kind, range] : tokens) {
            ASSERT_GT(range.length, 0u);
            if (kind != SyntaxKind::headerKey)
                ASSERT_GE(range.location, end) << read;
            else
                ASSERT_LE(range.location + range.length, end) << read;
            end = std::max(end, range.location + range.length);
        }
        ASSERT_LE(end, utf16Length(text)) << read;
    }
}
