// The tokens of a program in the Metal Shading Language, for changing its text. Takes any bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarnwick::fuzz {

enum class TokenKind : std::uint8_t {
    space,
    comment,
    directive, // from # to the end of its line
    word,
    number,
    text, // in quotes
    open, // a bracket
    close,
    symbol, // an operator, or any other byte
};

struct Token {
    TokenKind kind = TokenKind::space;
    std::string_view text; // of the program

    bool is(std::string_view other) const { return text == other; }
};

// In order, without gaps: joined they are the text, which must outlive them.
std::vector<Token> tokensOf(std::string_view text);

} // namespace tarnwick::fuzz
