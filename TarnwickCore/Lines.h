// Text taken apart at every line break that Unicode knows.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnwick {

// The lines of `text` that are not empty, without their breaks, as views into `text`. Breaks are
// U+000A to U+000D, U+0085, U+2028 and U+2029 in UTF-8 (Unicode 15, 5.8). Any bytes are taken.
std::vector<std::string_view> linesOf(std::string_view text);

// The length in bytes of the line break that begins at `at`, CR LF being one break; 0 where none
// does.
std::size_t lineBreakLength(std::string_view text, std::size_t at);

} // namespace tarnwick
