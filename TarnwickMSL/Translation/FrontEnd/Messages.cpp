#include "TarnwickMSL/Translation/FrontEnd/Messages.h"

#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"

#include <clang/Basic/SourceManager.h>

namespace tarnwick::msl {

using Level = clang::DiagnosticsEngine::Level;

// Errors end at 20 by themselves; warnings (about the bytes of a file that is no text) do not.
constexpr unsigned mostMessages = 200;

void Messages::BeginSourceFile(const clang::LangOptions& language,
                               const clang::Preprocessor* preprocessor) {
    options = new clang::DiagnosticOptions;
    options->ShowPresumedLoc = 1; // the names that #line gives
    options->ShowCarets = 1;
    text = std::make_unique<clang::TextDiagnostic>(out, language, options.get(), preprocessor);
}

void Messages::EndSourceFile() {
    flushWithheld();
    text.reset();
}

void Messages::flushWithheld() {
    if (!withheld.empty())
        out << "program_source: " << (withheldLevel == Level::Warning ? "warning: " : "error: ")
            << withheld << '\n';
    withheld.clear();
}

void Messages::HandleDiagnostic(Level level, const clang::Diagnostic& diagnostic) {
    DiagnosticConsumer::HandleDiagnostic(level, diagnostic); // counts
    if (++given > mostMessages)
        return;
    llvm::SmallString<256> message;
    diagnostic.FormatDiagnostic(message);
    if (!diagnostic.hasSourceManager() || !diagnostic.getLocation().isValid() || !text) {
        out << (level == Level::Warning ? "warning: " : "error: ") << message << '\n';
        return;
    }
    clang::SourceManager& sources = diagnostic.getSourceManager();
    const clang::FullSourceLoc at(diagnostic.getLocation(), sources);
    const bool isLibrary =
        about == About::program && isLibraryFile(sources.getFilename(sources.getExpansionLoc(at)));
    if (level == Level::Note) {
        if (isLibrary)
            return;
        if (!withheld.empty()) {
            text->emitDiagnostic(at, withheldLevel, withheld, {}, {});
            withheld.clear();
            return;
        }
    } else {
        flushWithheld();
        if (isLibrary) {
            withheld = message.str().str();
            withheldLevel = level;
            return;
        }
    }
    text->emitDiagnostic(at, level, message, diagnostic.getRanges(), diagnostic.getFixItHints());
}

} // namespace tarnwick::msl
