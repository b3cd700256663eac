// Reads the signatures of a program's entry points from their declarations.
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

// An entry point's declaration and its signature.
struct Entry {
    const clang::FunctionDecl* function = nullptr;
    EntrySignature signature;
};

// The entry points among a program's declarations, in source order. Invalid arguments and results
// are reported to the context's diagnostics.
std::vector<Entry> readEntries(clang::ASTContext& context,
                               const std::vector<clang::Decl*>& program);

// Adds the symbols and the LLVM types of pointees, which only the code generator knows.
void completeEntries(std::vector<Entry>& entries, clang::CodeGenerator& generator);

} // namespace tarnwick::msl
