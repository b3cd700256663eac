#include "TarnwickMSL/Translation/FrontEnd/Session/LibraryUses.h"

#include <clang/AST/Decl.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/ExprCXX.h>
#include <clang/AST/Stmt.h>
#include <llvm/ADT/DenseSet.h>
#include <llvm/ADT/SmallPtrSet.h>

namespace tarnwick::msl {
namespace {

using Functions = llvm::SmallVectorImpl<const clang::FunctionDecl*>;
using Variables = llvm::SmallVectorImpl<const clang::VarDecl*>;

// Adds the functions and the library's variables that code names.
class Search {
  public:
    Search(Functions& found, Variables& foundVariables)
        : found(found), foundVariables(foundVariables) {}

    void code(const clang::Stmt* statement);
    void function(const clang::FunctionDecl& definition);
    void declaration(const clang::Decl* declaration);

  private:
    Functions& found;
    Variables& foundVariables;
    llvm::SmallPtrSet<const clang::VarDecl*, 8> variables;

    void add(const clang::Decl* named);
    void named(const clang::Stmt* statement);
};

void Search::add(const clang::Decl* named) {
    if (const auto* function = llvm::dyn_cast_if_present<clang::FunctionDecl>(named))
        found.push_back(function);
    else if (const auto* variable = llvm::dyn_cast_if_present<clang::VarDecl>(named);
             variable && variable->hasGlobalStorage() && variables.insert(variable).second) {
        code(variable->getAnyInitializer());
        if (variable->isFromASTFile())
            foundVariables.push_back(variable);
    }
}

// What a node names beside the nodes below it.
void Search::named(const clang::Stmt* statement) {
    if (const auto* name = llvm::dyn_cast<clang::DeclRefExpr>(statement))
        add(name->getDecl());
    else if (const auto* member = llvm::dyn_cast<clang::MemberExpr>(statement))
        add(member->getMemberDecl());
    else if (const auto* made = llvm::dyn_cast<clang::CXXConstructExpr>(statement))
        add(made->getConstructor());
    else if (const auto* inherited = llvm::dyn_cast<clang::CXXInheritedCtorInitExpr>(statement))
        add(inherited->getConstructor());
    else if (const auto* bound = llvm::dyn_cast<clang::CXXBindTemporaryExpr>(statement))
        add(bound->getTemporary()->getDestructor());
    else if (const auto* given = llvm::dyn_cast<clang::CXXDefaultArgExpr>(statement))
        code(given->getExpr());
    else if (const auto* initial = llvm::dyn_cast<clang::CXXDefaultInitExpr>(statement))
        code(initial->getExpr());
    else if (const auto* value = llvm::dyn_cast<clang::OpaqueValueExpr>(statement))
        code(value->getSourceExpr());
    else if (const auto* list = llvm::dyn_cast<clang::InitListExpr>(statement))
        code(list->getArrayFiller());
}

void Search::code(const clang::Stmt* statement) {
    if (!statement)
        return;
    named(statement);
    for (const clang::Stmt* child : statement->children())
        code(child);
}

void Search::function(const clang::FunctionDecl& definition) {
    code(definition.getBody());
    if (const auto* constructor = llvm::dyn_cast<clang::CXXConstructorDecl>(&definition))
        for (const clang::CXXCtorInitializer* initialiser : constructor->inits())
            code(initialiser->getInit());
}

void Search::declaration(const clang::Decl* declaration) {
    if (const auto* space = llvm::dyn_cast<clang::DeclContext>(declaration);
        space && (llvm::isa<clang::NamespaceDecl>(declaration) ||
                  llvm::isa<clang::LinkageSpecDecl>(declaration)))
        for (const clang::Decl* inner : space->decls())
            this->declaration(inner);
    else
        add(declaration);
}

} // namespace

// An instance of a template may be one that an earlier program made.
static bool isOfLibrary(const clang::FunctionDecl& function) {
    return function.isFromASTFile() ||
           function.getTemplateSpecializationKind() == clang::TSK_ImplicitInstantiation;
}

LibraryUses::Uses LibraryUses::direct(const clang::FunctionDecl& definition) {
    if (const auto found = known.find(&definition); found != known.end())
        return found->second;
    Uses uses;
    Search(uses.functions, uses.variables).function(definition);
    if (definition.isFromASTFile()) {
        uses.builtIn = wrappedBuiltIn(definition);
        known.insert({&definition, uses});
    }
    return uses;
}

LibraryUses::Found LibraryUses::of(const std::vector<clang::Decl*>& program,
                                   const std::vector<const clang::FunctionDecl*>& functions) {
    llvm::SmallVector<const clang::FunctionDecl*, 64> open(functions.begin(), functions.end());
    llvm::SmallVector<const clang::VarDecl*, 16> variables;
    Search search(open, variables);
    for (const clang::Decl* declaration : program)
        search.declaration(declaration);
    Found found;
    llvm::DenseSet<const clang::FunctionDecl*> done;
    while (!open.empty()) {
        const clang::FunctionDecl* definition = nullptr;
        const clang::FunctionDecl* function = open.pop_back_val();
        if (!done.insert(function->getCanonicalDecl()).second || !function->hasBody(definition) ||
            definition->isDependentContext())
            continue;
        auto* own = const_cast<clang::FunctionDecl*>(definition);
        if (isOfLibrary(*definition) &&
            !llvm::isa<clang::CXXRecordDecl>(definition->getLexicalDeclContext()))
            found.functions.push_back(own);
        const Uses uses = direct(*definition);
        if (uses.builtIn != 0)
            found.wrappers.push_back({own, uses.builtIn});
        open.append(uses.functions);
        variables.append(uses.variables);
    }
    llvm::SmallPtrSet<const clang::VarDecl*, 16> passed;
    for (const clang::VarDecl* variable : variables)
        if (const clang::VarDecl* definition = variable->getDefinition();
            definition && passed.insert(definition).second)
            found.variables.push_back(const_cast<clang::VarDecl*>(definition));
    return found;
}

} // namespace tarnwick::msl
