// The `>>` that end two lists of template arguments at once.
#pragma once

#include <vector>

namespace clang {
class Token;
} // namespace clang

namespace tarnwick::msl {

// Makes two `>` of each, where a list of vec, array, a template of the program's own, a static_cast
// or a template's parameters is open, so that each of them ends one list.
void partClosers(std::vector<clang::Token>& tokens);

} // namespace tarnwick::msl
