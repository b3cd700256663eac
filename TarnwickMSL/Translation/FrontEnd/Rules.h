// What a shader may not do though C++ allows it, reported at the user's lines.
#pragma once

#include <vector>

namespace clang {
class ASTContext;
class Decl;
class DiagnosticsEngine;
} // namespace clang

namespace tarnwick::msl {

// Looks through a program's declarations for recursion, function pointers, static locals that
// change, globals without an address space, exceptions and the like.
void checkRules(clang::ASTContext& context, const std::vector<clang::Decl*>& program);

} // namespace tarnwick::msl
