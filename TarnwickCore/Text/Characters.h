// Characters as readers count them, and white space around a text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The characters of `text`, each one extended grapheme cluster (Unicode Standard Annex 29, 3.1): a
// letter with its marks, a whole emoji. Bytes that are not UTF-8 become U+FFFD.
std::vector<std::string> charactersOf(std::string_view text);

// The longest beginning of `text` of whole characters in at most `mostBytes` bytes. If the first
// character alone is longer, as many of its code points as fit.
std::string_view wholeCharacters(std::string_view text, std::size_t mostBytes);

// The number of cells of a terminal that a character of charactersOf() occupies: 2 for wide
// characters (Unicode Standard Annex 11) and emoji, 0 for marks without a letter and for controls,
// otherwise 1.
int cellsOf(std::string_view character);

// `text` in upper case by the full mappings of Unicode 15, 3.13, independent of language; it may
// become longer. Bytes that are not UTF-8 become U+FFFD.
std::string upperCased(std::string_view text);

// `text` without the white space (Unicode's White_Space) at its two ends.
std::string_view trimmed(std::string_view text);

} // namespace tarnwick
