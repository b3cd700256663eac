#include "TarnwickCore/Text/TerminalText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <string>

namespace tarnwick {
namespace {

// A character as UTF-8, up to U+FFFF.
std::string encoded(unsigned value) {
    if (value < 0x80)
        return {static_cast<char>(value)};
    if (value < 0x800)
        return {static_cast<char>(0xc0 | value >> 6), static_cast<char>(0x80 | (value & 0x3f))};
    return {static_cast<char>(0xe0 | value >> 12), static_cast<char>(0x80 | (value >> 6 & 0x3f)),
            static_cast<char>(0x80 | (value & 0x3f))};
}

// Unicode's Cc, Zl, Zp, and Bidi_Control.
bool isDangerous(unsigned value) {
    constexpr std::array<unsigned, 5> single{0x61c, 0x200e, 0x200f, 0x2028, 0x2029};
    return value < 0x20 || (value >= 0x7f && value <= 0x9f) ||
           std::ranges::count(single, value) > 0 || (value >= 0x202a && value <= 0x202e) ||
           (value >= 0x2066 && value <= 0x2069);
}

TEST(TerminalText, replacesExactlyTheCharactersThatATerminalObeys) {
    for (unsigned value = 0; value < 0x10000; ++value) {
        if (value >= 0xd800 && value < 0xe000)
            continue; // surrogates are not UTF-8
        const std::string character = encoded(value);
        const std::string expected = isDangerous(value) ? "?" : character;
        ASSERT_EQ(terminalText("a" + character + "b"), "a" + expected + "b") << std::hex << value;
        const bool stays = value == '\n' || value == '\t';
        ASSERT_EQ(terminalLines("a" + character + "b"), "a" + (stays ? character : expected) + "b")
            << std::hex << value;
    }
}

TEST(TerminalText, replacesBytesThatAreNotUTF8) {
    EXPECT_EQ(terminalText("a\x9b[2Jb"), "a?[2Jb"); // CSI in one byte
    EXPECT_EQ(terminalText("\xe2\x80"), "?");
    EXPECT_EQ(terminalText("\xf0\x9f\x8c\xb9\xff"), "\xf0\x9f\x8c\xb9?");
}

TEST(TerminalText, keepsLinesButNoReturnToTheirStart) {
    EXPECT_EQ(terminalLines("one\r\ntwo\rthree\n"), "one\ntwo?three\n");
}

TEST(TerminalText, keepsTheValueOfADocument) {
    std::string all;
    for (unsigned value = 0; value < 0x3000; ++value)
        all += encoded(value);
    const nlohmann::json document{{"text", all}, {all, {1, 2}}};
    const std::string safe = terminalJSON(document.dump(2));
    EXPECT_EQ(nlohmann::json::parse(safe), document);
    EXPECT_EQ(terminalLines(safe), safe);
}

} // namespace
} // namespace tarnwick
