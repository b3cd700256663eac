#include "TarnwickMSL/Translation/FrontEnd/Messages.h"

#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"
#include "TarnwickMSL/Translation/FrontEnd/Missing.h"
#include "TarnwickMSL/Translation/FrontEnd/TokenPlaces.h"

#include <clang/Basic/SourceManager.h>
#include <clang/Lex/Lexer.h>
#include <llvm/ADT/StringExtras.h>

#include <algorithm>

namespace tarnwick::msl {

using Level = clang::DiagnosticsEngine::Level;

void reportError(clang::DiagnosticsEngine& diagnostics, clang::SourceLocation at,
                 const char* message, llvm::StringRef first, llvm::StringRef second) {
    const unsigned id =
        diagnostics.getDiagnosticIDs()->getCustomDiagID(clang::DiagnosticIDs::Error, message);
    diagnostics.Report(at, id) << first << second;
}

// Clang stops after 20 errors, but limits no warnings (-ferror-limit).
constexpr unsigned mostWarnings = 200;

static DiagnosticKind kindOf(Level level) {
    return level == Level::Note      ? DiagnosticKind::note
           : level == Level::Warning ? DiagnosticKind::warning
                                     : DiagnosticKind::error;
}

void Messages::BeginSourceFile(const clang::LangOptions& given,
                               const clang::Preprocessor* preprocessor) {
    language = given;
    options = new clang::DiagnosticOptions;
    options->ShowPresumedLoc = 1; // files and lines by #line
    options->ShowCarets = 1;
    text = std::make_unique<clang::TextDiagnostic>(out, given, options.get(), preprocessor);
}

void Messages::nextProgram(const clang::LangOptions& language,
                           const clang::Preprocessor& preprocessor) {
    clear();
    BeginSourceFile(language, &preprocessor);
    isSilent = false;
    withheld.clear();
    diagnostics.clear();
}

void Messages::EndSourceFile() {
    flushWithheld();
    text.reset();
}

void Messages::flushWithheld() {
    if (!withheld.empty()) {
        out << "program_source: " << (withheldLevel == Level::Warning ? "warning: " : "error: ")
            << withheld << '\n';
        diagnostics.push_back({.kind = kindOf(withheldLevel), .file = {}, .text = withheld});
    }
    withheld.clear();
}

// The bytes from the place to the end of a range that begins there, or else of the token there.
std::uint32_t Messages::lengthAt(clang::FullSourceLoc at,
                                 llvm::ArrayRef<clang::CharSourceRange> ranges) const {
    const clang::SourceManager& sources = at.getManager();
    const clang::SourceLocation begin = sources.getFileLoc(at);
    for (const clang::CharSourceRange& range : ranges) {
        const clang::CharSourceRange in = clang::Lexer::makeFileCharRange(range, sources, language);
        if (in.isValid() && in.getBegin() == begin &&
            sources.getSpellingLineNumber(begin) == sources.getSpellingLineNumber(in.getEnd()))
            return sources.getFileOffset(in.getEnd()) - sources.getFileOffset(begin);
    }
    return std::max(1u, clang::Lexer::MeasureTokenLength(begin, sources, language));
}

// Prints the message, and adds it to the data.
void Messages::emit(clang::FullSourceLoc at, Level level, llvm::StringRef message,
                    llvm::ArrayRef<clang::CharSourceRange> ranges,
                    llvm::ArrayRef<clang::FixItHint> hints) {
    text->emitDiagnostic(at, level, message, ranges, hints);
    const clang::PresumedLoc place = at.getManager().getPresumedLoc(at);
    Diagnostic made{.kind = kindOf(level), .file = {}, .text = message.str()};
    if (place.isValid()) {
        made.file = place.getFilename();
        made.line = place.getLine();
        made.column = place.getColumn();
        made.length = lengthAt(at, ranges);
    }
    diagnostics.push_back(std::move(made));
}

// An invalid constructor of float4 is an invalid call of msl_float4 (Library/types/constructors.h).
// Rewrites the message.
static void nameConstructor(llvm::SmallString<256>& message) {
    const auto [before, from] = message.str().split("'msl_");
    const llvm::StringRef type = from.split('\'').first;
    if (type.size() < 3 || type == "make" || !llvm::isDigit(type.back()))
        return;
    const std::string text =
        ("no matching constructor for initialization of '" + type + "' (vector of " +
         type.take_back(1) + " '" + type.drop_back(1) + "' values)")
            .str();
    message = text;
}

// Vectors that are classes declare no setter for swizzles with repeated components
// (Library/types/swizzles.h). Rewrites Clang's message to the message for other vectors.
static void nameAssignment(llvm::SmallString<256>& message) {
    if (message.str().starts_with("no setter defined for property '"))
        message = "vector is not assignable (contains duplicate components)";
}

static void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at))
        text.replace(at, from.size(), to);
}

// Rewrites "unknown name" where Metal has the name and this platform does not.
static void nameMissing(llvm::SmallString<256>& message) {
    const llvm::StringRef text = message;
    if (!text.starts_with("unknown type name '") && !text.starts_with("no template named '") &&
        !text.starts_with("no type named '") && !text.starts_with("no member named '") &&
        !text.starts_with("use of undeclared identifier '"))
        return;
    const std::string name = text.split('\'').second.split('\'').first.str();
    if (isMissingName(name))
        message = missing("'" + name + "'");
}

// Meshes and uniform types have internal names (Library/types/meshes.h, uniforms.h).
static void nameLibraryWords(llvm::SmallString<256>& message) {
    if (!message.str().contains("msl_"))
        return;
    std::string text = message.str().str();
    for (const char* word : {"mesh", "topology", "uniform"})
        replaceAll(text, std::string("msl_") + word, word);
    message = text;
}

// Removes the suggestion of an internal name of the library. Returns whether there was one.
static bool cutInternalSuggestion(llvm::SmallString<256>& message) {
    for (const llvm::StringRef suggestion : {"; did you mean '_", "; did you mean 'msl_"})
        if (const std::size_t at = message.str().find(suggestion); at != llvm::StringRef::npos) {
            message.truncate(at);
            return true;
        }
    return false;
}

// Replaces Clang's spelling of vector types, an attribute, by Metal's names. Comparisons give masks
// of int; in Metal they are vectors of bool.
static void nameVectors(llvm::SmallString<256>& message) {
    static constexpr std::pair<const char*, const char*> elements[] = {{"unsigned char", "uchar"},
                                                                       {"unsigned short", "ushort"},
                                                                       {"unsigned int", "uint"},
                                                                       {"unsigned long", "ulong"},
                                                                       {"char", "char"},
                                                                       {"short", "short"},
                                                                       {"int", "int"},
                                                                       {"long", "long"},
                                                                       {"half", "half"},
                                                                       {"float", "float"}};
    if (!message.str().contains("ext_vector_type"))
        return;
    std::string text = message.str().str();
    for (const char* lanes : {"2", "3", "4"}) {
        const std::string attribute =
            std::string(" __attribute__((ext_vector_type(") + lanes + ")))";
        replaceAll(text, "'int" + attribute + "' (vector of " + lanes + " 'int' values)",
                   std::string("'bool") + lanes + "'");
        for (const auto& [clang, metal] : elements)
            replaceAll(text, clang + attribute, std::string(metal) + lanes);
    }
    message = text;
}

// Replaces the component types of textures by Metal's names.
static void nameTextures(llvm::SmallString<256>& message) {
    if (!message.str().contains("metal::texture"))
        return;
    std::string text = message.str().str();
    replaceAll(text, "<unsigned int", "<uint");
    replaceAll(text, "<unsigned short", "<ushort");
    message = text;
}

// "use -fbracket-depth=N to increase maximum nesting level": an option that only Clang's own
// program has.
static bool isAdviceOfOption(llvm::StringRef note) {
    return note.starts_with("use -f");
}

// A failed static_assert of the library: its text alone.
static llvm::StringRef withoutRequirement(llvm::StringRef message) {
    const bool isAssertion = message.starts_with("static assertion failed");
    return isAssertion && message.contains("': ") ? message.split("': ").second : message;
}

bool Messages::isElsewhere(const clang::Diagnostic& diagnostic) const {
    return !warningsIn.empty() &&
           (!diagnostic.getLocation().isValid() ||
            diagnostic.getSourceManager().getPresumedLoc(diagnostic.getLocation()).getFilename() !=
                warningsIn);
}

bool Messages::isUnwanted(Level level, const clang::Diagnostic& diagnostic) {
    if (level == Level::Note)
        return isSilent;
    const bool isWarning = level <= Level::Warning;
    isSilent = isWarning && isElsewhere(diagnostic);
    if (isSilent)
        return true;
    DiagnosticConsumer::HandleDiagnostic(level, diagnostic); // counts
    isSilent = isWarning && getNumWarnings() > mostWarnings;
    return isSilent;
}

void Messages::HandleDiagnostic(Level level, const clang::Diagnostic& diagnostic) {
    if (isUnwanted(level, diagnostic))
        return;
    if (level == Level::Fatal)
        level = Level::Error; // readers of the messages expect "error:" after the place
    llvm::SmallString<256> message;
    diagnostic.FormatDiagnostic(message);
    if (level == Level::Note && isAdviceOfOption(message))
        return;
    nameConstructor(message);
    nameAssignment(message);
    nameMissing(message);
    const bool isInternal = cutInternalSuggestion(message);
    nameVectors(message);
    nameLibraryWords(message);
    nameTextures(message);
    if (!diagnostic.hasSourceManager() || !diagnostic.getLocation().isValid() || !text) {
        out << (level == Level::Warning ? "warning: " : "error: ") << message << '\n';
        diagnostics.push_back({.kind = kindOf(level), .file = {}, .text = message.str().str()});
        return;
    }
    clang::SourceManager& sources = diagnostic.getSourceManager();
    const clang::FullSourceLoc at(usersPlace(sources, diagnostic.getLocation()), sources);
    const bool isLibrary =
        about == About::program && isLibraryFile(sources.getFilename(sources.getExpansionLoc(at)));
    if (level == Level::Note) {
        if (isLibrary)
            return;
        if (!withheld.empty()) {
            emit(at, withheldLevel, withheld);
            withheld.clear();
            return;
        }
    } else {
        flushWithheld();
        if (isLibrary) {
            withheld = withoutRequirement(message).str();
            withheldLevel = level;
            return;
        }
    }
    llvm::SmallVector<clang::CharSourceRange, 4> ranges;
    for (const clang::CharSourceRange& range : diagnostic.getRanges())
        ranges.emplace_back(clang::SourceRange(usersPlace(sources, range.getBegin()),
                                               usersPlace(sources, range.getEnd())),
                            range.isTokenRange());
    emit(at, level, message, ranges,
         isInternal ? llvm::ArrayRef<clang::FixItHint>()
                    : llvm::ArrayRef<clang::FixItHint>(diagnostic.getFixItHints()));
}

} // namespace tarnwick::msl
