// Splits `>>` that closes two lists of template arguments.
#pragma once

#include <vector>

namespace clang {
class Token;
} // namespace clang

namespace tarnwick::msl {

// Replaces `>>` by two `>` where a list of template arguments or parameters is open: of vec, array,
// static_cast or a template that the program declares.
void partClosers(std::vector<clang::Token>& tokens);

} // namespace tarnwick::msl
