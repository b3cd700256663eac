// The symbols of functions in the generated code.
#pragma once

#include <llvm/ADT/DenseMap.h>

#include <memory>
#include <optional>
#include <string>

namespace clang {
class ASTContext;
class FunctionDecl;
class MangleContext;
} // namespace clang

namespace tarnwick::msl {

class FunctionSymbols {
  public:
    explicit FunctionSymbols(clang::ASTContext& context);
    ~FunctionSymbols();

    // Absent for constructors and destructors, of which there are several functions, and for
    // templates.
    std::optional<std::string> of(const clang::FunctionDecl& function);

  private:
    std::unique_ptr<clang::MangleContext> mangling;
    llvm::DenseMap<const clang::FunctionDecl*, std::optional<std::string>> ofLibrary;

    std::optional<std::string> mangled(const clang::FunctionDecl& function) const;
};

} // namespace tarnwick::msl
