// The compiler's text as users see it: Clang's own, but never about the standard library's insides.
#pragma once

#include <clang/Basic/Diagnostic.h>
#include <clang/Frontend/TextDiagnostic.h>
#include <llvm/Support/raw_ostream.h>

#include <memory>
#include <string>

namespace tarnwick::msl {

// Prints each message with its excerpt and caret. What is reported inside the library (an error in
// the body of one of its templates) is told at the user's line that asked for it; notes that point
// into the library are left out.
class Messages : public clang::DiagnosticConsumer {
  public:
    enum class About { program, library };
    // Where `warningsIn` is not empty, warnings are given for the text of that name (#line) alone.
    Messages(llvm::raw_ostream& out, About about, std::string warningsIn = {})
        : out(out), about(about), warningsIn(std::move(warningsIn)) {}

    void BeginSourceFile(const clang::LangOptions& options,
                         const clang::Preprocessor* preprocessor) override;
    void EndSourceFile() override;
    void HandleDiagnostic(clang::DiagnosticsEngine::Level level,
                          const clang::Diagnostic& diagnostic) override;

  private:
    llvm::raw_ostream& out;
    About about;
    std::string warningsIn;
    bool isSilent = false; // what the last message was: its notes are left out with it
    llvm::IntrusiveRefCntPtr<clang::DiagnosticOptions> options;
    std::unique_ptr<clang::TextDiagnostic> text;
    unsigned given = 0;
    std::string withheld; // a message whose place in the program is not known yet
    clang::DiagnosticsEngine::Level withheldLevel = clang::DiagnosticsEngine::Ignored;

    void flushWithheld();
    bool isUnwanted(clang::DiagnosticsEngine::Level level, const clang::Diagnostic& diagnostic);
};

} // namespace tarnwick::msl
