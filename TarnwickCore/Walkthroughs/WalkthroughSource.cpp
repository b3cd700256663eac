#include "TarnwickCore/Text/Blanks.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Sentence.h"
#include "TarnwickCore/Text/UTF8.h"
#include "TarnwickCore/Walkthroughs/Walkthrough.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::array<std::string_view, 3> programKeys{"param", "particles", "grid"};

// A scanned line of the file.
struct Scanned {
    std::string code;
    std::string comment;
    bool isCommented = false; // some or all of it is comment
    bool isDirective = false; // then `code` is the whole line, or empty if ignored
};

bool isASCIIDigitOrLetter(char unit) {
    return (unit >= '0' && unit <= '9') || (unit >= 'a' && unit <= 'z') ||
           (unit >= 'A' && unit <= 'Z');
}

bool isWordUnit(char unit) {
    return isASCIIDigitOrLetter(unit) || unit == '_';
}

std::string joined(std::string_view first, std::string_view second) {
    const bool areBoth = !first.empty() && !second.empty();
    return std::string(first).append(areBoth ? " " : "").append(second);
}

// The words of a comment without decoration: "/// ", the star at the beginning of a line, and lines
// without a letter or digit.
std::string_view wordsOf(std::string_view comment) {
    comment = withoutBlanks(comment);
    comment.remove_prefix(std::min(comment.find_first_not_of("/*!"), comment.size()));
    comment = comment.substr(0, comment.find_last_not_of("*\\") + 1);
    const bool says = std::ranges::any_of(comment, [](char unit) {
        return isASCIIDigitOrLetter(unit) || static_cast<unsigned char>(unit) >= 0x80;
    });
    return says ? withoutBlanks(comment) : "";
}

// The key of a directive that begins with the // at the beginning of `text`; empty for a comment.
std::string_view directiveKey(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks, 2), text.size()));
    if (!text.starts_with('@'))
        return "";
    text.remove_prefix(1);
    const auto end = std::ranges::find_if_not(text, isWordUnit);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

// Separates code from comments, unit by unit.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : text_(text) {}

    std::vector<Scanned> lines() {
        while (at_ < text_.size()) {
            if (const std::size_t length = lineBreakLength(text_, at_); length > 0)
                endLine(length);
            else
                (this->*steps[static_cast<std::size_t>(state_)])();
        }
        finishLine();
        return std::move(lines_);
    }

  private:
    enum class State { code, string, character, lineComment, blockComment };

    void stepCode();
    void stepString() { stepQuoted('"'); }
    void stepCharacter() { stepQuoted('\''); }
    void stepQuoted(char quote);
    void stepLineComment() { comment_ += text_[at_++]; }
    void stepBlockComment();
    // In the order of the states.
    static constexpr std::array<void (Scanner::*)(), 5> steps{
        &Scanner::stepCode, &Scanner::stepString, &Scanner::stepCharacter,
        &Scanner::stepLineComment, &Scanner::stepBlockComment};

    bool startsWith(std::string_view mark) const { return text_.substr(at_).starts_with(mark); }
    bool isCodeBlank() const { return line_.code.find_first_not_of(blanks) == std::string::npos; }
    void take(std::size_t count) {
        line_.code += text_.substr(at_, count);
        at_ += std::min(count, text_.size() - at_);
    }
    void begin(State comment);
    bool takeDirective();
    void finishComment();
    void endLine(std::size_t breakLength);
    void finishLine();

    std::string_view text_;
    std::size_t at_ = 0;
    State state_ = State::code;
    Scanned line_;
    std::string comment_; // the part of the current comment on this line
    std::vector<Scanned> lines_;
};

void Scanner::stepCode() {
    const char unit = text_[at_];
    if (startsWith("//"))
        return isCodeBlank() && takeDirective() ? void() : begin(State::lineComment);
    if (startsWith("/*"))
        return begin(State::blockComment);
    if (unit == '"')
        state_ = State::string;
    // After a letter or digit it separates digits: 1'000 (C++20, 5.13.2).
    else if (unit == '\'' && (line_.code.empty() || !isWordUnit(line_.code.back())))
        state_ = State::character;
    take(1);
}

void Scanner::stepQuoted(char quote) {
    const char unit = text_[at_];
    // A backslash escapes the unit after it, except a line break, which ends the line here.
    const bool guards = unit == '\\' && lineBreakLength(text_, at_ + 1) == 0;
    if (unit == quote)
        state_ = State::code;
    take(guards ? 2 : 1);
}

void Scanner::stepBlockComment() {
    if (!startsWith("*/")) {
        comment_ += text_[at_++];
        return;
    }
    at_ += 2;
    finishComment();
    state_ = State::code;
    // The comment becomes one blank (C++20, 5.2).
    if (isCodeBlank() || blanks.find(line_.code.back()) != std::string_view::npos)
        at_ = std::min(text_.find_first_not_of(blanks, at_), text_.size());
}

void Scanner::begin(State comment) {
    state_ = comment;
    line_.isCommented = true;
    at_ += 2;
    if (!isCodeBlank() && blanks.find(line_.code.back()) == std::string_view::npos)
        line_.code += ' ';
}

// A directive ends at every line break. After a break that does not end the comment, the compiler
// still reads comment.
bool Scanner::takeDirective() {
    const std::string_view key = directiveKey(text_.substr(at_));
    if (key.empty())
        return false;
    line_.isDirective = true;
    state_ = State::lineComment;
    while (at_ < text_.size() && lineBreakLength(text_, at_) == 0)
        take(1);
    line_.code =
        std::ranges::find(programKeys, key) == programKeys.end() ? "" : withoutBlanks(line_.code);
    return true;
}

void Scanner::finishComment() {
    line_.comment = joined(line_.comment, wordsOf(comment_));
    comment_.clear();
}

void Scanner::endLine(std::size_t breakLength) {
    const bool endsForTheCompiler = text_[at_] == '\n' || text_[at_] == '\r';
    const bool isSpliced = at_ > 0 && text_[at_ - 1] == '\\';
    if (state_ != State::blockComment && endsForTheCompiler && !isSpliced)
        state_ = State::code;
    at_ += breakLength;
    finishLine();
}

void Scanner::finishLine() {
    finishComment();
    line_.code.erase(line_.code.find_last_not_of(blanks) + 1);
    lines_.push_back(std::exchange(line_, {}));
    line_.isCommented = state_ == State::lineComment || state_ == State::blockComment;
}

// Moves the title and the summary from the comments at the beginning of `lines` to `source`.
void takeHeading(std::vector<Scanned>& lines, Walkthrough::ParsedSource& source) {
    for (Scanned& line : lines) {
        if (line.isDirective)
            continue;
        if (!line.code.empty() || (line.comment.empty() && !source.title.empty()))
            return;
        if (source.title.empty())
            source.title = std::exchange(line.comment, "");
        else
            source.summary = joined(source.summary, std::exchange(line.comment, ""));
    }
}

// Joins two independent comments.
std::string both(const std::string& above, const std::string& beside) {
    return above.empty() || beside.empty() ? above + beside
                                           : sentence(above) + " " + sentence(beside);
}

} // namespace

Walkthrough::ParsedSource Walkthrough::parsed(std::string_view source) {
    const std::string text = wellFormedUTF8(source);
    std::vector<Scanned> scanned = Scanner(text).lines();
    ParsedSource result;
    takeHeading(scanned, result);
    std::string above; // the comment lines directly above
    for (Scanned& line : scanned) {
        if (!line.code.empty()) {
            result.lines.push_back({std::move(line.code), both(above, line.comment)});
            above.clear();
        } else if (line.isCommented) {
            above = joined(above, line.comment);
        } else if (!line.isDirective) {
            result.lines.emplace_back();
            above.clear();
        }
    }
    return result;
}

} // namespace tarnwick
