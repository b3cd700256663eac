// Divides code into words, numbers and marks, for a simple reading of its declarations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarnwick::player {

struct CodeToken {
    // A macro is the name that a #define line defines; other preprocessor lines give no tokens.
    enum class Kind : std::uint8_t { word, number, mark, macro };

    Kind kind = Kind::mark;
    std::size_t at = 0; // offset in bytes
    std::string_view text;

    bool is(std::string_view mark) const { return kind == Kind::mark && text == mark; }
    std::size_t end() const { return at + text.size(); }
};

// The tokens of `code`, which has no comments and strings (codeText). "::" and "->" are one mark,
// other marks have one character. The tokens refer to `code`. Accepts any bytes.
std::vector<CodeToken> codeTokens(std::string_view code);

// For each token that is a bracket, ( [ {, or its counterpart: the index of the other one; the
// number of tokens without one.
std::vector<std::size_t> bracketPairs(const std::vector<CodeToken>& tokens);

} // namespace tarnwick::player
