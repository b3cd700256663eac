#include "TarnwickMSL/Translation/FrontEnd/Session/FunctionSymbols.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/GlobalDecl.h>
#include <clang/AST/Mangle.h>
#include <llvm/Support/raw_ostream.h>

namespace tarnwick::msl {

FunctionSymbols::FunctionSymbols(clang::ASTContext& context)
    : mangling(context.createMangleContext()) {}

FunctionSymbols::~FunctionSymbols() = default;

std::optional<std::string> FunctionSymbols::of(const clang::FunctionDecl& function) {
    if (!function.isFromASTFile())
        return mangled(function);
    const auto [place, isNew] = ofLibrary.try_emplace(&function);
    if (isNew)
        place->second = mangled(function);
    return place->second;
}

std::optional<std::string> FunctionSymbols::mangled(const clang::FunctionDecl& function) const {
    if (llvm::isa<clang::CXXConstructorDecl, clang::CXXDestructorDecl>(function) ||
        function.isDependentContext())
        return std::nullopt;
    if (!mangling->shouldMangleDeclName(&function))
        return function.getIdentifier() ? std::optional(function.getName().str()) : std::nullopt;
    std::string symbol;
    llvm::raw_string_ostream stream(symbol);
    mangling->mangleName(clang::GlobalDecl(&function), stream);
    return symbol;
}

} // namespace tarnwick::msl
