// What Clang reports about a program while it parses. Code is generated from it later.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd/Session/LibraryUses.h"

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/DeclGroup.h>
#include <llvm/ADT/STLFunctionalExtras.h>

#include <vector>

namespace clang {
class CodeGenerator;
class Decl;
class FunctionDecl;
class TagDecl;
class VarDecl;
} // namespace clang

namespace tarnwick::msl {

class ProgramConsumer : public clang::ASTConsumer {
  public:
    bool HandleTopLevelDecl(clang::DeclGroupRef group) override;
    void HandleInlineFunctionDefinition(clang::FunctionDecl* function) override;
    void HandleTagDeclDefinition(clang::TagDecl* tag) override;
    void HandleTagDeclRequiredDefinition(const clang::TagDecl* tag) override;
    void HandleCXXImplicitFunctionInstantiation(clang::FunctionDecl* function) override;
    void HandleCXXStaticMemberVarInstantiation(clang::VarDecl* variable) override;
    void HandleVTable(clang::CXXRecordDecl*) override {}

    // The program's own declarations, in source order.
    std::vector<clang::Decl*> declarations() const;
    // The functions that Clang defined without a declaration at the top: methods and instances of
    // templates.
    std::vector<const clang::FunctionDecl*> otherFunctions() const;

    // Passes on what the program uses of the library, then all that was reported, and what is
    // reported until `end`. Functions that are omitted have no code, if they are not members of
    // classes or namespaces.
    using IsOmitted = llvm::function_ref<bool(const clang::FunctionDecl&)>;
    void passTo(clang::CodeGenerator& generator, const LibraryUses::Found& library,
                IsOmitted isOmitted);
    void end() { receiver = nullptr; }

  private:
    enum class Kind { inlineFunction, tag, requiredTag, functionInstance, variableInstance };
    struct Report {
        Kind kind;
        clang::Decl* declaration;
    };
    std::vector<clang::DeclGroupRef> groups;
    std::vector<Report> reports;
    clang::CodeGenerator* receiver = nullptr;

    void take(Report report);
    static void pass(Report report, clang::CodeGenerator& generator);
};

} // namespace tarnwick::msl
