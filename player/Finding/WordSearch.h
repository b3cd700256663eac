// Finds entries of a list by a few typed letters.
#pragma once

#include <optional>
#include <string_view>

namespace tarnwick::player {

// Whether `text` has each word of `words`, in any case of ASCII letters and any order.
bool hasWords(std::string_view words, std::string_view text);

// How well `query` fits `text`; greater is better. In descending order: `text` begins with it; its
// words are beginnings of words of `text`; `text` has its words; its letters are in `text` in their
// order ("svas" in "Save as"). Nothing if they are not. 0 for an empty query.
std::optional<int> fitOf(std::string_view query, std::string_view text);

} // namespace tarnwick::player
