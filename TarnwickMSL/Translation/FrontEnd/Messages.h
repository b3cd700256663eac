// Clang's messages as users see them, without the internals of the standard library.
#pragma once

#include "TarnwickMSL/Compilation.h"

#include <clang/Basic/Diagnostic.h>
#include <clang/Basic/LangOptions.h>
#include <clang/Frontend/TextDiagnostic.h>
#include <llvm/Support/raw_ostream.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::msl {

// Reports an error of the front end's own rules as Clang reports its own. The message has %0 and %1
// for the words.
void reportError(clang::DiagnosticsEngine& diagnostics, clang::SourceLocation at,
                 const char* message, llvm::StringRef first = "", llvm::StringRef second = "");

// Prints each message with the source line and a caret. A message inside the library (an error in
// the body of a template) is printed at the line of the program that uses it. Notes inside the
// library are left out.
class Messages : public clang::DiagnosticConsumer {
  public:
    enum class About { program, library };
    // If `warningsIn` is not empty, prints warnings only for the file of that name (#line).
    Messages(llvm::raw_ostream& out, About about, std::string warningsIn = {})
        : out(out), about(about), warningsIn(std::move(warningsIn)) {}

    // Several programs in one source file of Clang's: forgets the messages before.
    void nextProgram(const clang::LangOptions& options, const clang::Preprocessor& preprocessor);
    void endProgram() { flushWithheld(); }
    // The printed messages as data, since the last call.
    std::vector<Diagnostic> take() { return std::exchange(diagnostics, {}); }

    void BeginSourceFile(const clang::LangOptions& options,
                         const clang::Preprocessor* preprocessor) override;
    void EndSourceFile() override;
    void HandleDiagnostic(clang::DiagnosticsEngine::Level level,
                          const clang::Diagnostic& diagnostic) override;

  private:
    llvm::raw_ostream& out;
    About about;
    std::string warningsIn;
    bool isSilent = false; // whether the last message was left out; its notes are left out too
    llvm::IntrusiveRefCntPtr<clang::DiagnosticOptions> options;
    std::unique_ptr<clang::TextDiagnostic> text;
    std::string withheld; // a message that waits for its place in the program
    clang::DiagnosticsEngine::Level withheldLevel = clang::DiagnosticsEngine::Ignored;

    std::vector<Diagnostic> diagnostics;
    clang::LangOptions language;

    void flushWithheld();
    void emit(clang::FullSourceLoc at, clang::DiagnosticsEngine::Level level,
              llvm::StringRef message, llvm::ArrayRef<clang::CharSourceRange> ranges = {},
              llvm::ArrayRef<clang::FixItHint> hints = {});
    std::uint32_t lengthAt(clang::FullSourceLoc at,
                           llvm::ArrayRef<clang::CharSourceRange> ranges) const;
    // Whether the place is not in the file whose warnings are printed.
    bool isElsewhere(const clang::Diagnostic& diagnostic) const;
    // Counts the message, and decides whether it is left out.
    bool isUnwanted(clang::DiagnosticsEngine::Level level, const clang::Diagnostic& diagnostic);
};

} // namespace tarnwick::msl
