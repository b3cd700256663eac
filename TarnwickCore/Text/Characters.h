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

// How many of a terminal's cells a character of charactersOf takes: 2 for wide ones (Unicode
// Standard Annex 11) and emoji, 0 for marks without a letter and controls, else 1.
int cellsOf(std::string_view character);

// `text` in upper case as Unicode has it without a language (Unicode 15, 3.13): full mappings, so
// it may grow. Bytes that are not UTF-8 become U+FFFD.
std::string upperCased(std::string_view text);

// `text` without the white space (Unicode's White_Space) at its two ends.
std::string_view trimmed(std::string_view text);

} // namespace tarnwick
