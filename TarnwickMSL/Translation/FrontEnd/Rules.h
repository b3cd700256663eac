// Reports uses of C++ that are invalid in shaders, at the lines of the program.
#pragma once

#include <vector>

namespace clang {
class ASTContext;
class Decl;
class DiagnosticsEngine;
} // namespace clang

namespace tarnwick::msl {

// Reports recursion, function pointers, large local arrays, threadgroup variables with an initial
// value, and mutable variables at program scope or static in a function.
void checkRules(clang::ASTContext& context, const std::vector<clang::Decl*>& program);

} // namespace tarnwick::msl
