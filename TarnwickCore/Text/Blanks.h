// The blanks of a line of code: spaces and tabs.
#pragma once

#include <algorithm>
#include <string_view>

namespace tarnwick {

inline constexpr std::string_view blanks = " \t";

// `text` without the blanks at its two ends.
inline std::string_view withoutBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

} // namespace tarnwick
