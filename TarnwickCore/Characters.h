// Characters as readers count them, and the blanks around a text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The characters of `text`, each one extended grapheme cluster (Unicode Standard Annex 29, 3.1): a
// letter with its marks, a whole emoji. Bytes that are not UTF-8 come back as U+FFFD.
std::vector<std::string> charactersOf(std::string_view text);

// As many characters as `text` begins with in at most `mostBytes`; of a first character that is
// longer, as many of its code points.
std::string_view wholeCharacters(std::string_view text, std::size_t mostBytes);

// `text` in upper case as Unicode has it without a language (Unicode 15, 3.13): full mappings, so
// it may grow. Bytes that are not UTF-8 become U+FFFD.
std::string upperCased(std::string_view text);

// `text` without the white space (Unicode's White_Space) at its two ends.
std::string_view trimmed(std::string_view text);

} // namespace tarnwick
