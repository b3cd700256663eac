// Divides text at all line breaks of Unicode.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarnwick {

// The lines of `text` that are not empty, without their breaks, as views into `text`. Breaks are
// U+000A to U+000D, U+0085, U+2028 and U+2029 in UTF-8 (Unicode 15, 5.8). Accepts any bytes.
std::vector<std::string_view> linesOf(std::string_view text);

// The length in bytes of the line break at `at`; CR LF is one break. 0 if no line ends at `at`.
std::size_t lineBreakLength(std::string_view text, std::size_t at);

// All lines of `text`, including empty ones, as the compiler counts them: breaks are LF, CR and CR
// LF.
std::vector<std::string_view> compilerLines(std::string_view text);

// A place in a text, as in the compiler's messages.
struct TextPlace {
    std::int64_t line = 0;   // from 1
    std::int64_t column = 0; // from 1, in bytes

    auto operator<=>(const TextPlace&) const = default;
};

// The place of the byte at `offset`, [0, size of the text].
TextPlace placeOf(std::string_view text, std::size_t offset);

} // namespace tarnwick
