#include "TarnwickMSL/Translation/FrontEnd/Session/ProgramConsumer.h"

#include <clang/AST/Decl.h>
#include <clang/AST/DeclCXX.h>
#include <clang/CodeGen/ModuleBuilder.h>

namespace tarnwick::msl {

// The functions and variables of the library that Clang reads are many, and few are used:
// LibraryUses finds these.
bool ProgramConsumer::HandleTopLevelDecl(clang::DeclGroupRef group) {
    // While code is generated, Clang reads more of the library from the precompiled header.
    if (receiver)
        return receiver->HandleTopLevelDecl(group);
    groups.push_back(group);
    return true;
}

void ProgramConsumer::take(Report report) {
    if (receiver)
        pass(report, *receiver);
    else
        reports.push_back(report);
}

void ProgramConsumer::HandleInlineFunctionDefinition(clang::FunctionDecl* function) {
    take({Kind::inlineFunction, function});
}
void ProgramConsumer::HandleTagDeclDefinition(clang::TagDecl* tag) {
    take({Kind::tag, tag});
}
void ProgramConsumer::HandleTagDeclRequiredDefinition(const clang::TagDecl* tag) {
    take({Kind::requiredTag, const_cast<clang::TagDecl*>(tag)});
}
void ProgramConsumer::HandleCXXImplicitFunctionInstantiation(clang::FunctionDecl* function) {
    take({Kind::functionInstance, function});
}
void ProgramConsumer::HandleCXXStaticMemberVarInstantiation(clang::VarDecl* variable) {
    take({Kind::variableInstance, variable});
}

void ProgramConsumer::pass(Report report, clang::CodeGenerator& generator) {
    switch (report.kind) {
    case Kind::inlineFunction:
        generator.HandleInlineFunctionDefinition(
            llvm::cast<clang::FunctionDecl>(report.declaration));
        break;
    case Kind::tag:
        generator.HandleTagDeclDefinition(llvm::cast<clang::TagDecl>(report.declaration));
        break;
    case Kind::requiredTag:
        generator.HandleTagDeclRequiredDefinition(llvm::cast<clang::TagDecl>(report.declaration));
        break;
    case Kind::functionInstance:
        generator.HandleCXXImplicitFunctionInstantiation(
            llvm::cast<clang::FunctionDecl>(report.declaration));
        break;
    case Kind::variableInstance:
        generator.HandleCXXStaticMemberVarInstantiation(
            llvm::cast<clang::VarDecl>(report.declaration));
        break;
    }
}

std::vector<clang::Decl*> ProgramConsumer::declarations() const {
    std::vector<clang::Decl*> program;
    for (const clang::DeclGroupRef& group : groups)
        for (clang::Decl* declaration : group)
            if (!declaration->isFromASTFile())
                program.push_back(declaration);
    return program;
}

std::vector<const clang::FunctionDecl*> ProgramConsumer::otherFunctions() const {
    std::vector<const clang::FunctionDecl*> functions;
    for (const Report& report : reports)
        if (const auto* function = llvm::dyn_cast<clang::FunctionDecl>(report.declaration))
            functions.push_back(function);
    return functions;
}

void ProgramConsumer::passTo(clang::CodeGenerator& generator, const LibraryUses::Found& library,
                             IsOmitted isOmitted) {
    auto isNeeded = [&](const clang::Decl* declaration) {
        const auto* function = llvm::dyn_cast<clang::FunctionDecl>(declaration);
        return !function || !isOmitted(*function);
    };
    for (const Report& report : reports)
        if (isNeeded(report.declaration))
            pass(report, generator);
    receiver = &generator;
    for (clang::VarDecl* variable : library.variables)
        generator.HandleTopLevelDecl(clang::DeclGroupRef(variable));
    for (clang::FunctionDecl* function : library.functions)
        if (isNeeded(function))
            generator.HandleTopLevelDecl(clang::DeclGroupRef(function));
    for (const clang::DeclGroupRef& group : groups)
        if (!(*group.begin())->isFromASTFile() &&
            (!group.isSingleDecl() || isNeeded(group.getSingleDecl())))
            generator.HandleTopLevelDecl(group);
}

} // namespace tarnwick::msl
