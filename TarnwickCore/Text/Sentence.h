// Words of a comment as a sentence.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `words` with its first character in upper case, and with a full stop behind it unless it ends in
// one of ".", "!", "?", ":" and "…". Characters are those that readers count, upper case is
// Unicode's in no language in particular ("ß" becomes "SS"). Empty for empty words.
std::string sentence(std::string_view words);

} // namespace tarnwick
