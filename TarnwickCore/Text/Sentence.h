// Makes a sentence of the words of a comment.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `words` with its first character in upper case (Unicode, independent of language: "ß" becomes
// "SS"), and with a full stop, unless it ends in ".", "!", "?", ":" or "…". Characters are grapheme
// clusters. Empty for empty words.
std::string sentence(std::string_view words);

} // namespace tarnwick
