// From the declarations of a program's entry points to their signatures.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <vector>

namespace clang {
class ASTContext;
class CodeGenerator;
class Decl;
class FunctionDecl;
} // namespace clang

namespace tarnwick::msl {

// An entry point's declaration and what was read from it.
struct Entry {
    const clang::FunctionDecl* function = nullptr;
    EntrySignature signature;
};

// The entry points among a program's declarations, in source order. What their arguments and
// results may not be is reported to the context's diagnostics.
std::vector<Entry> readEntries(clang::ASTContext& context,
                               const std::vector<clang::Decl*>& program);

// Fills in what only the code generator knows: symbols and the pointees' LLVM types.
void completeEntries(std::vector<Entry>& entries, clang::CodeGenerator& generator);

} // namespace tarnwick::msl
