#include "TarnwickMSL/Translation/FrontEnd/Session/LibraryChanges.h"

#include <clang/AST/DeclCXX.h>
#include <clang/AST/DeclFriend.h>
#include <clang/AST/DeclTemplate.h>

#include <algorithm>

namespace tarnwick::msl {
namespace {

bool isOfLibrary(const clang::Decl* declaration) {
    return declaration && declaration->isFromASTFile();
}

// The template that the program specialises or instantiates by a declaration. Instances that Clang
// makes by itself are as good for the next program.
const clang::Decl* specialisedTemplate(const clang::Decl& declaration) {
    const auto* record = llvm::dyn_cast<clang::ClassTemplateSpecializationDecl>(&declaration);
    if (record && record->getSpecializationKind() != clang::TSK_ImplicitInstantiation)
        return record->getSpecializedTemplate();
    const auto* variable = llvm::dyn_cast<clang::VarTemplateSpecializationDecl>(&declaration);
    if (variable && variable->getSpecializationKind() != clang::TSK_ImplicitInstantiation)
        return variable->getSpecializedTemplate();
    const auto* function = llvm::dyn_cast<clang::FunctionDecl>(&declaration);
    if (function && function->getTemplateSpecializationKind() != clang::TSK_ImplicitInstantiation)
        return function->getPrimaryTemplate();
    return nullptr;
}

bool changes(const clang::Decl& declaration) {
    if (llvm::isa<clang::FriendDecl, clang::FriendTemplateDecl, clang::LinkageSpecDecl,
                  clang::CXXDeductionGuideDecl>(declaration) ||
        isOfLibrary(declaration.getPreviousDecl()) || isOfLibrary(specialisedTemplate(declaration)))
        return true;
    if (const auto* named = llvm::dyn_cast<clang::NamedDecl>(&declaration);
        named &&
        named->getDeclName().getNameKind() == clang::DeclarationName::CXXLiteralOperatorName)
        return true;
    const auto* outer = llvm::dyn_cast<clang::DeclContext>(&declaration);
    return outer && std::ranges::any_of(outer->decls(),
                                        [](const clang::Decl* inner) { return changes(*inner); });
}

} // namespace

bool changesLibrary(const std::vector<clang::Decl*>& program) {
    return std::ranges::any_of(
        program, [](const clang::Decl* declaration) { return changes(*declaration); });
}

} // namespace tarnwick::msl
