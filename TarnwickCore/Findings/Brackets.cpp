#include "TarnwickCore/Findings/Brackets.h"

#include "TarnwickCore/Editor/MSLSyntax.h"
#include "TarnwickCore/Findings/CodeText.h"
#include "TarnwickCore/Findings/Words.h"
#include "TarnwickCore/Text/Blanks.h"
#include "TarnwickCore/Text/Lines.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tarnwick {
namespace {

constexpr std::string_view openers = "{([", closers = "})]";
constexpr std::size_t deepest = 4096; // nested brackets; the compiler accepts fewer

// A bracket that is not closed yet.
struct Open {
    std::size_t at = 0;     // bytes
    std::size_t indent = 0; // of its line, in columns
};

struct Conditional {
    std::size_t at = 0;
    std::vector<Open> before;                 // open brackets at the #if
    std::optional<std::vector<Open>> through; // and at the end of the first branch
};

std::size_t lineStart(std::string_view text, std::size_t at) {
    const std::size_t before = text.substr(0, at).find_last_of("\n\r");
    return before == std::string_view::npos ? 0 : before + 1;
}

std::size_t lineEnd(std::string_view text, std::size_t at) {
    return std::min(text.find_first_of("\n\r", at), text.size());
}

// The columns of the blanks at the beginning of `line`; tab stops are at every fourth column.
std::size_t indentOf(std::string_view line) {
    std::size_t columns = 0;
    for (const char one : line.substr(0, line.find_first_not_of(blanks)))
        columns += one == '\t' ? 4 - columns % 4 : 1;
    return columns;
}

// Whether the word before `at` and its blanks is "for".
bool followsFor(std::string_view text, std::size_t at) {
    while (at > 0 && blanks.find(text[at - 1]) != std::string_view::npos)
        --at;
    return text.substr(0, at).ends_with("for") && (at == 3 || !isWordCharacter(text[at - 4]));
}

// The beginning of a comment that never ends.
std::optional<std::size_t> openComment(std::string_view source) {
    const std::vector<SyntaxToken> tokens = MSLSyntax::tokens(source);
    if (tokens.empty() || tokens.back().kind != SyntaxKind::comment)
        return std::nullopt;
    const std::size_t start = UTF16Cursor(source).byteOf(tokens.back().range.location);
    const std::string_view comment = source.substr(start);
    const bool isOpen =
        comment.starts_with("/*") && comment.find("*/", 2) == std::string_view::npos;
    return isOpen ? std::optional(start) : std::nullopt;
}

class Pairing {
  public:
    explicit Pairing(std::string_view source) : source_(source), code_(codeText(source)) {}

    std::optional<Diagnostic> error();

  private:
    void readLine();
    void readDirective();
    void open();
    void close(char closer);
    void endStatement();
    void finish();
    bool isAligned(const Open& open) const { return at_ != firstOfLine_ || open.indent == indent_; }
    // Keeps the first error.
    void blame(std::size_t at, const std::string& message);
    void blameOpen(std::size_t at, std::string_view opener, std::string_view end = "closed");
    void blameOpen(const Open& open) { blameOpen(open.at, source_.substr(open.at, 1)); }

    std::string_view source_;
    std::string code_;
    std::size_t at_ = 0;
    std::size_t lineStart_ = 0, firstOfLine_ = 0; // the beginning of the line and of its code
    std::size_t indent_ = 0;                      // of the line, in columns
    std::vector<Open> open_;                      // outermost first
    std::optional<Open> parenthesis_; // the last closed one: its end, and the indent of its opener
    std::vector<Conditional> conditionals_;
    // The braces that are suspect by indentation: an opening brace deeper than the line of its
    // closing brace; a closing brace deeper than the line of its opening brace.
    std::optional<std::size_t> suspectOpener_, suspectCloser_;
    std::optional<Diagnostic> error_;
    bool hasUnpairedMacro_ = false;
};

void Pairing::blame(std::size_t at, const std::string& message) {
    if (error_)
        return;
    const auto [line, column] = placeOf(source_, at);
    error_ = {.severity = Severity::error, .line = line, .column = column, .message = message};
}

void Pairing::blameOpen(std::size_t at, std::string_view opener, std::string_view end) {
    if (error_)
        return; // finding lines is slow
    const std::string line = std::to_string(placeOf(source_, at).line);
    blame(at, "'" + std::string(opener) + "' of line " + line + " is never " + std::string(end));
}

// A brace after a parenthesis belongs to the line of the opening parenthesis.
void Pairing::open() {
    const bool isBehind = code_[at_] == '{' && parenthesis_ && parenthesis_->at >= lineStart_;
    open_.push_back({at_, isBehind ? parenthesis_->indent : indent_});
}

void Pairing::close(char closer) {
    const char opener = openers[closers.find(closer)];
    const auto partner = std::find_if(open_.rbegin(), open_.rend(),
                                      [&](const Open& open) { return code_[open.at] == opener; });
    if (partner == open_.rend()) {
        const std::size_t at = closer == '}' ? suspectCloser_.value_or(at_) : at_;
        return blame(at, std::string("'") + closer + "' has no matching '" + opener + "'");
    }
    if (partner != open_.rbegin())
        blameOpen(open_.back());
    if (closer == '}' && !isAligned(*partner)) {
        const bool isDeeper = indent_ > partner->indent;
        if (auto& suspect = isDeeper ? suspectCloser_ : suspectOpener_; !suspect)
            suspect = isDeeper ? at_ : partner->at;
    }
    if (closer == ')')
        parenthesis_ = {.at = at_, .indent = partner->indent};
    open_.erase(partner.base() - 1, open_.end());
    if (!open_.empty())
        return;
    // All brackets are paired up to here, regardless of indentation.
    suspectOpener_.reset();
    if (indent_ == 0)
        suspectCloser_.reset();
}

// Parentheses must end before a statement ends, except for those of a for loop.
void Pairing::endStatement() {
    while (!open_.empty() && code_[open_.back().at] != '{') {
        if (followsFor(code_, open_.back().at))
            return;
        blameOpen(open_.back());
        open_.pop_back();
    }
}

void Pairing::readLine() {
    const std::string_view line = std::string_view(code_).substr(at_, lineEnd(code_, at_) - at_);
    lineStart_ = at_;
    firstOfLine_ = at_ + std::min(line.find_first_not_of(blanks), line.size());
    indent_ = indentOf(line);
    for (const std::size_t end = lineEnd(code_, at_); at_ < end; ++at_) {
        const char one = code_[at_];
        if (openers.find(one) != std::string_view::npos && open_.size() < deepest)
            open();
        else if (closers.find(one) != std::string_view::npos)
            close(one);
        else if (one == ';')
            endStatement();
    }
}

// Only one branch of a conditional is compiled. Each branch begins with the brackets open at the
// #if; the brackets open at the end of the first branch remain open after the #endif.
void Pairing::readDirective() {
    const std::size_t start = at_;
    at_ = lineEnd(code_, at_);
    while (at_ > start && at_ < code_.size() && code_[at_ - 1] == '\\')
        at_ = lineEnd(code_, at_ + (code_.compare(at_, 2, "\r\n") == 0 ? 2 : 1));
    const std::string_view text = std::string_view(code_).substr(start, at_ - start);
    const std::string_view word = wordAt(text, text.find_first_not_of("# \t"));
    if (word.starts_with("if")) {
        conditionals_.push_back({start, open_, std::nullopt});
    } else if (word.starts_with("el") && !conditionals_.empty()) {
        Conditional& last = conditionals_.back();
        if (!last.through)
            last.through = open_;
        open_ = last.before;
    } else if (word == "endif" && !conditionals_.empty()) {
        if (conditionals_.back().through)
            open_ = *std::move(conditionals_.back().through);
        conditionals_.pop_back();
    } else if (word == "define") {
        for (std::size_t pair = 0; pair < openers.size(); ++pair)
            hasUnpairedMacro_ |=
                std::ranges::count(text, openers[pair]) != std::ranges::count(text, closers[pair]);
    }
}

void Pairing::finish() {
    // An unclosed comment contains all text after it.
    if (const auto comment = openComment(source_))
        blameOpen(*comment, "/*");
    if (!conditionals_.empty())
        blameOpen(conditionals_.back().at, "#if", "ended by #endif");
    if (open_.empty())
        return;
    if (code_[open_.back().at] == '{' && suspectOpener_)
        blameOpen({.at = *suspectOpener_});
    blameOpen(open_.back());
}

std::optional<Diagnostic> Pairing::error() {
    while (at_ < code_.size() && open_.size() < deepest) {
        const std::string_view line =
            withoutBlanks(std::string_view(code_).substr(at_, lineEnd(code_, at_) - at_));
        line.starts_with('#') ? readDirective() : readLine();
        ++at_;
    }
    finish();
    return hasUnpairedMacro_ ? std::nullopt : error_;
}

} // namespace

std::optional<Diagnostic> unpairedBracket(std::string_view source) {
    return Pairing(source).error();
}

std::optional<Diagnostic> unfinishedEnd(std::string_view source) {
    const std::string code = codeText(source);
    const std::size_t last = code.find_last_not_of(" \t\r\n");
    if (last == std::string::npos || code[last] == ';' || code[last] == '}' ||
        withoutBlanks(std::string_view(code).substr(lineStart(code, last))).starts_with('#'))
        return std::nullopt;
    const auto [line, column] = placeOf(source, last);
    return Diagnostic{.severity = Severity::error,
                      .line = line,
                      .column = column,
                      .message = "the text ends in the middle of a declaration"};
}

} // namespace tarnwick
