// Warnings that a program's author asks for (Compile.h, moreWarningsIn).
#pragma once

#include <llvm/ADT/StringRef.h>

#include <array>
#include <vector>

namespace clang {
class ASTContext;
class Decl;
} // namespace clang

namespace tarnwick::msl {

// The options that turn on Clang's own ones.
inline constexpr std::array moreWarnings{
    "-Wunused-variable",   "-Wunused-but-set-variable", "-Wunused-value",
    "-Wuninitialized",     "-Wsometimes-uninitialized", "-Wconditional-uninitialized",
    "-Wliteral-conversion"};

// Reports those that Clang does not have, in the text that #line calls `file`: integer divisions
// that drop a fraction, and unused parameters of functions that no other text calls (which would
// dictate their parameters).
void warnMore(clang::ASTContext& context, const std::vector<clang::Decl*>& program,
              llvm::StringRef file);

} // namespace tarnwick::msl
