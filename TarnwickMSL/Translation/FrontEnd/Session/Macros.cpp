#include "TarnwickMSL/Translation/FrontEnd/Session/Macros.h"

#include <clang/Basic/SourceManager.h>
#include <clang/Lex/MacroInfo.h>
#include <clang/Lex/Preprocessor.h>

#include <utility>

namespace tarnwick::msl {

void Macros::MacroDefined(const clang::Token& name, const clang::MacroDirective* directive) {
    clang::IdentifierInfo* word = name.getIdentifierInfo();
    const clang::MacroDirective* before = directive->getPrevious();
    const bool replaces = before && before->isDefined() && !own.contains(word);
    isOther = isOther || replaces;
    own.insert(word);
}

void Macros::MacroUndefined(const clang::Token& name, const clang::MacroDefinition& definition,
                            const clang::MacroDirective*) {
    isOther = isOther || (definition && !own.contains(name.getIdentifierInfo()));
}

// Pragmas about loops belong to a statement.
void Macros::PragmaDirective(clang::SourceLocation at, clang::PragmaIntroducerKind kind) {
    bool isInvalid = kind != clang::PIK_HashPragma;
    llvm::StringRef line = preprocessor.getSourceManager().getCharacterData(at, &isInvalid);
    for (const llvm::StringRef word : {"#", "pragma", ""})
        line.consume_front(word), line = line.ltrim(" \t");
    const bool isOfProgram = line.starts_with("unroll") || line.starts_with("nounroll") ||
                             line.starts_with("clang loop ");
    isOther = isOther || isInvalid || kind != clang::PIK_HashPragma || !isOfProgram;
}

// Only files of the library can be found.
void Macros::EmbedDirective(clang::SourceLocation at, llvm::StringRef, bool,
                            clang::OptionalFileEntryRef, const clang::LexEmbedParametersResult&) {
    clang::DiagnosticsEngine& diagnostics = preprocessor.getDiagnostics();
    diagnostics.Report(at, diagnostics.getCustomDiagID(clang::DiagnosticsEngine::Error,
                                                       "'#embed' is not supported in Metal"));
}

bool Macros::remove(clang::Preprocessor& preprocessor) {
    clang::SourceManager& sources = preprocessor.getSourceManager();
    const clang::SourceLocation place = sources.getLocForEndOfFile(sources.getMainFileID());
    for (clang::IdentifierInfo* word : own)
        if (word->hasMacroDefinition())
            preprocessor.appendMacroDirective(word, new (preprocessor.getPreprocessorAllocator())
                                                        clang::UndefMacroDirective(place));
    own.clear();
    preprocessor.setCounterValue(0); // __COUNTER__
    return !std::exchange(isOther, false);
}

} // namespace tarnwick::msl
