#include "TarnwickCore/Editor/CodeEdit.h"
#include "TarnwickCore/Text/UTF8.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace tarnwick;

namespace {

constexpr std::size_t far = std::numeric_limits<std::size_t>::max();

// The text after toggling the comments of the selected lines.
std::string toggled(const std::string& text, TextRange selection = {.location = 0, .length = far}) {
    const auto [range, replacement] = CodeEdit::toggleLineComments(text, selection);
    UTF16Cursor cursor(text);
    const std::size_t start = cursor.byteOf(range.location);
    const std::size_t end = cursor.byteOf(range.location + range.length);
    return text.substr(0, start) + replacement + text.substr(end);
}

} // namespace

TEST(CodeEdit, commentsInOneColumnAndUncomments) {
    EXPECT_EQ(toggled("    a();\n  b();"), "  //   a();\n  // b();");
    EXPECT_EQ(toggled("\ta\n\n  \r\n\t\tb\r\n"), "\t// a\n\n  \r\n\t// \tb\r\n");
    EXPECT_EQ(toggled("// a\nb"), "// // a\n// b");
    EXPECT_EQ(toggled("//a\n//  b\n\n \t// c // d\r\n"), "a\n b\n\n \tc // d\r\n");
    EXPECT_EQ(toggled("\n \n\t\r\n"), "\n \n\t\r\n");
    // A no-break space is blank, but not indentation.
    EXPECT_EQ(toggled("\xc2\xa0\n\xc2\xa0//a\n"), "\xc2\xa0\n\xc2\xa0"
                                                  "a\n");
    EXPECT_EQ(toggled("\xc2\xa0"
                      "b"),
              "// \xc2\xa0"
              "b");
    EXPECT_EQ(toggled(""), "");
}

TEST(CodeEdit, touchesTheLinesOfTheSelection) {
    const std::string text = "a\nb\nc";
    using Replacement = CodeEdit::Replacement;
    const std::vector<std::pair<TextRange, Replacement>> rows{
        {{2, 0}, {{2, 2}, "// b\n"}}, // an empty selection: its line with the newline
        {{1, 0}, {{0, 2}, "// a\n"}}, // before the newline
        {{0, 2}, {{0, 2}, "// a\n"}}, // to the newline
        {{1, 1}, {{0, 2}, "// a\n"}}, // only the newline
        {{0, 3}, {{0, 4}, "// a\n// b\n"}}, {{3, 2}, {{2, 3}, "// b\n// c"}},
        {{9, 0}, {{4, 1}, "// c"}},         {{4, far}, {{4, 1}, "// c"}}};
    for (const auto& [selection, expected] : rows) {
        const auto met = CodeEdit::toggleLineComments(text, selection);
        EXPECT_EQ(met, expected) << selection.location << "+" << selection.length << ": "
                                 << met.range.location << "+" << met.range.length << " "
                                 << met.replacement;
    }
    EXPECT_EQ(CodeEdit::toggleLineComments("a\n", {2, 0}), (Replacement{{2, 0}, ""}));
}

TEST(CodeEdit, countsCodeUnits) {
    const std::string text = "\xf0\x9f\x98\x80\n\xf0\x9f\x98\x80\xe2\x80\nb";
    for (const std::size_t location : {3u, 4u, 6u}) // in the pair, behind it, before the newline
        EXPECT_EQ(CodeEdit::toggleLineComments(text, {location, 0}),
                  (CodeEdit::Replacement{{3, 4}, "// \xf0\x9f\x98\x80\xef\xbf\xbd\n"}));
    EXPECT_EQ(CodeEdit::indent(4, "\xf0\x9f\x98\x80\n\t b"), "\t ");
}

TEST(CodeEdit, returnsTheIndentOfALine) {
    EXPECT_EQ(CodeEdit::indent(0, "\t  a\n b"), "\t  ");
    EXPECT_EQ(CodeEdit::indent(4, "\t  a\n b"), "\t  ");
    EXPECT_EQ(CodeEdit::indent(far, "\t  a\n b"), " ");
    EXPECT_EQ(CodeEdit::indent(0, ""), "");
    EXPECT_EQ(CodeEdit::indent(3, "  \n"), "");
    EXPECT_EQ(CodeEdit::indent(0, " \t\r\na"), " \t");
}

// If no line was a comment, toggling twice restores the text.
TEST(CodeEdit, restoresAnyLines) {
    static constexpr std::string_view bytes = "a \t\r\n\n\xc3\xa9\xf0\x9f\x98\x80\xff";
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 16, 'a');
        for (char& byte : text)
            byte = bytes[random() % bytes.size()];
        const TextRange selection{random() % 20, random() % 20};
        const auto [range, commented] = CodeEdit::toggleLineComments(text, selection);
        ASSERT_LE(range.location + range.length, utf16Length(text));
        const auto back = CodeEdit::toggleLineComments(commented, {0, far});
        const std::string block =
            wellFormedUTF8(text).substr(UTF16Cursor(wellFormedUTF8(text)).byteOf(range.location));
        ASSERT_TRUE(block.starts_with(back.replacement)) << wellFormedUTF8(text);
        ASSERT_EQ(utf16Length(back.replacement), range.length);
    }
}
