// Additional warnings (Compile.h, moreWarningsIn).
#pragma once

#include <llvm/ADT/StringRef.h>

#include <array>
#include <vector>

namespace clang {
class ASTContext;
class Decl;
} // namespace clang

namespace tarnwick::msl {

// The options for Clang's warnings.
inline constexpr std::array moreWarnings{
    "-Wunused-variable",   "-Wunused-but-set-variable", "-Wunused-value",
    "-Wuninitialized",     "-Wsometimes-uninitialized", "-Wconditional-uninitialized",
    "-Wliteral-conversion"};

// Reports warnings that Clang does not have, in the file that #line names `file`: integer divisions
// that drop a fraction, and unused parameters of functions that no other file calls (a call from
// elsewhere dictates the parameters).
void warnMore(clang::ASTContext& context, const std::vector<clang::Decl*>& program,
              llvm::StringRef file);

} // namespace tarnwick::msl
