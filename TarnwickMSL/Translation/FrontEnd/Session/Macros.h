// The macros that a program defines.
#pragma once

#include <clang/Lex/PPCallbacks.h>
#include <llvm/ADT/SetVector.h>

namespace clang {
class IdentifierInfo;
class Preprocessor;
} // namespace clang

namespace tarnwick::msl {

// Notes them while the preprocessor reads the program.
class Macros : public clang::PPCallbacks {
  public:
    // Removes the macros noted. False if the program did more than to define its own: if it changed
    // those of the library or has a #pragma, whose effects cannot be removed.
    bool remove(clang::Preprocessor& preprocessor);

  private:
    llvm::SetVector<clang::IdentifierInfo*> own;
    bool isOther = false;

    void MacroDefined(const clang::Token& name, const clang::MacroDirective* directive) override;
    void MacroUndefined(const clang::Token& name, const clang::MacroDefinition& definition,
                        const clang::MacroDirective* directive) override;
    void PragmaDirective(clang::SourceLocation, clang::PragmaIntroducerKind) override {
        isOther = true;
    }
};

} // namespace tarnwick::msl
