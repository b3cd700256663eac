// Words of Swift and Metal that a generated program cannot use as names.
#pragma once

#include <string_view>

namespace tarnwick {

// Whether Swift reads `word` as a keyword somewhere, so that as a name it stands in backquotes (The
// Swift Programming Language 5.9, Lexical Structure).
bool isSwiftKeyword(std::string_view word);

// Whether no Metal function can be called `word`, or none that Swift finds by that name: keywords
// of C++14, Metal's own words and scalar, vector and matrix types, and what Swift reads after a
// full stop as something else than a member. `word` has letters and digits only.
bool isReservedFunction(std::string_view word);

// Whether no member of a record can be called `word`: keywords of C++14 and Metal's own.
bool isReservedMember(std::string_view word);

} // namespace tarnwick
