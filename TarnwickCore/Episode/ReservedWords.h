// Words of Swift and Metal that are not valid names in a generated program.
#pragma once

#include <string_view>

namespace tarnwick {

// Whether `word` is a keyword of Swift in some context, so that as a name it must be in backquotes
// (The Swift Programming Language 5.9, Lexical Structure).
bool isSwiftKeyword(std::string_view word);

// Whether `word` is not valid as the name of a Metal function that Swift calls: keywords of C++14,
// words of Metal and its scalar, vector and matrix types, and words that Swift does not read as a
// member after a full stop. `word` has letters and digits only.
bool isReservedFunction(std::string_view word);

// Whether `word` is not valid as the name of a member: keywords of C++14 and of Metal.
bool isReservedMember(std::string_view word);

} // namespace tarnwick
