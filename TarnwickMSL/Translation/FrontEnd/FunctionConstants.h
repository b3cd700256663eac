// Reads a program's function constants (Metal Shading Language 3.1, 5.8) from their declarations.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <vector>

namespace clang {
class ASTContext;
class CodeGenerator;
class Decl;
class VarDecl;
} // namespace clang

namespace tarnwick::msl {

// A function constant without a value.
struct OpenConstant {
    const clang::VarDecl* variable = nullptr;
    ConstantSignature signature;
};

// The function constants without a value, in source order. Invalid types and indices are reported
// to the context's diagnostics, for those with a value too.
std::vector<OpenConstant> readConstants(clang::ASTContext& context,
                                        const std::vector<clang::Decl*>& program);

// Adds the symbols, which only the code generator knows.
void completeConstants(std::vector<OpenConstant>& constants, clang::CodeGenerator& generator);

} // namespace tarnwick::msl
