// Walks over the declarations of a program, and their symbols.
#pragma once

#include <clang/AST/DeclCXX.h>
#include <clang/AST/GlobalDecl.h>
#include <clang/CodeGen/ModuleBuilder.h>
#include <llvm/IR/GlobalValue.h>

#include <string>
#include <vector>

namespace tarnwick::msl {

// Calls `visit` with each declaration of the kind, in source order, also in namespaces and linkage
// specifications.
template <class Declaration, class Declarations, class Visit>
void eachDeclaration(const Declarations& declarations, Visit visit) {
    for (clang::Decl* each : declarations)
        if (const auto* declaration = llvm::dyn_cast<Declaration>(each))
            visit(*declaration);
        else if (llvm::isa<clang::NamespaceDecl, clang::LinkageSpecDecl>(each))
            eachDeclaration<Declaration>(llvm::cast<clang::DeclContext>(each)->decls(), visit);
}

// The name that the code generator gives a function or a variable.
template <class Declaration>
std::string symbolOf(const Declaration& declaration, clang::CodeGenerator& generator) {
    return llvm::cast<llvm::GlobalValue>(
               generator.GetAddrOfGlobal(clang::GlobalDecl(&declaration), false))
        ->getName()
        .str();
}

} // namespace tarnwick::msl
