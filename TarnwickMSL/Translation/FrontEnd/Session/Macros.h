// The macros that a program defines, and its directives that concern more than itself.
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
    explicit Macros(const clang::Preprocessor& preprocessor) : preprocessor(preprocessor) {}

    // Removes the macros noted. False if the program did more than to define its own: if it changed
    // those of the library, or has a #pragma whose effect may reach beyond the program.
    bool remove(clang::Preprocessor& preprocessor);

  private:
    const clang::Preprocessor& preprocessor;
    llvm::SetVector<clang::IdentifierInfo*> own;
    bool isOther = false;

    void MacroDefined(const clang::Token& name, const clang::MacroDirective* directive) override;
    void MacroUndefined(const clang::Token& name, const clang::MacroDefinition& definition,
                        const clang::MacroDirective* directive) override;
    void PragmaDirective(clang::SourceLocation at, clang::PragmaIntroducerKind kind) override;
    void EmbedDirective(clang::SourceLocation at, llvm::StringRef file, bool isAngled,
                        clang::OptionalFileEntryRef found,
                        const clang::LexEmbedParametersResult& parameters) override;
};

} // namespace tarnwick::msl
