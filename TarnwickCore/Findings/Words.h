// Words of the text of a program: ASCII letters, digits and underscores.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tarnwick {

constexpr bool isWordCharacter(char one) {
    return (one >= 'a' && one <= 'z') || (one >= 'A' && one <= 'Z') || (one >= '0' && one <= '9') ||
           one == '_';
}

// The word characters from `at` on; empty without one.
inline std::string_view wordAt(std::string_view text, std::size_t at) {
    std::size_t end = std::min(at, text.size());
    while (end < text.size() && isWordCharacter(text[end]))
        ++end;
    return text.substr(std::min(at, end), end - std::min(at, end));
}

// The word that ends before `end`.
inline std::string_view wordBefore(std::string_view text, std::size_t end) {
    std::size_t start = end;
    while (start > 0 && isWordCharacter(text[start - 1]))
        --start;
    return text.substr(start, end - start);
}

// The position of `word` in `text` from `from` on, as a whole word; npos without one.
inline std::size_t findWord(std::string_view text, std::string_view word, std::size_t from = 0) {
    for (std::size_t at = text.find(word, from); at != std::string_view::npos;
         at = text.find(word, at + 1))
        if (wordBefore(text, at).empty() && wordAt(text, at).size() == word.size())
            return at;
    return std::string_view::npos;
}

} // namespace tarnwick
