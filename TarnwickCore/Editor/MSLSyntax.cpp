#include "TarnwickCore/Editor/MSLSyntax.h"

#include "TarnwickCore/Editor/SyntaxWords.h"
#include "TarnwickCore/Text/UTF8.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

enum class CharacterClass : std::uint8_t {
    plain, // begins no token
    quote,
    hash,
    slash,
    bracket,
    dot,
    digit,
    letter,
};

constexpr std::array<CharacterClass, 256> characterClasses = [] {
    std::array<CharacterClass, 256> classes{};
    auto put = [&](std::string_view characters, CharacterClass one) {
        for (const char character : characters)
            classes[static_cast<unsigned char>(character)] = one;
    };
    put("\"", CharacterClass::quote);
    put("#", CharacterClass::hash);
    put("/", CharacterClass::slash);
    put("[", CharacterClass::bracket);
    put(".", CharacterClass::dot);
    put("0123456789", CharacterClass::digit);
    put("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", CharacterClass::letter);
    return classes;
}();

CharacterClass classOf(char character) {
    return characterClasses[static_cast<unsigned char>(character)];
}

bool continuesName(char character) {
    return classOf(character) >= CharacterClass::digit;
}

// Works on bytes: tokens begin and end with ASCII characters, which are one byte and one code unit
// each and never part of another character.
class Tokenizer {
  public:
    explicit Tokenizer(std::string_view text) : text_(text), words_(SyntaxWords::all()) {
        tokens_.reserve(text.size() / 16);
    }

    std::vector<SyntaxToken> tokens() && {
        for (;;) {
            at_ = endOfRun(at_, [](char one) { return classOf(one) == CharacterClass::plain; });
            if (at_ == text_.size())
                return std::move(tokens_);
            const CharacterClass one = classOf(text_[at_]);
            // Most tokens are names, and the processor predicts a branch of their own better than a
            // jump.
            at_ = one == CharacterClass::letter ? name() : endOf(one);
        }
    }

  private:
    char next(std::size_t ahead = 1) const { // NUL after the end
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }
    std::size_t add(SyntaxKind kind, std::size_t end) {
        tokens_.push_back({kind, {.location = at_, .length = end - at_}});
        return end;
    }

    // The end of the run of characters from `start` on for which `such` is true.
    template <class Such> std::size_t endOfRun(std::size_t start, Such such) const {
        const std::string_view text = text_; // a copy: no write to a token can alias it
        while (start < text.size() && such(text[start]))
            ++start;
        return start;
    }

    // Whether only blanks are before this on its line. The newline of an unterminated string is
    // part of the string and begins no line.
    bool beginsLine() const {
        const std::size_t before = text_.substr(0, at_).find_last_not_of(" \t\r");
        return before == std::string_view::npos ||
               (text_[before] == '\n' && before + 1 != stringEnd_);
    }

    // The end of the token that begins here.
    std::size_t endOf(CharacterClass one) {
        switch (one) {
        case CharacterClass::letter:
            return name();
        case CharacterClass::digit:
            return number();
        case CharacterClass::dot:
            return classOf(next()) == CharacterClass::digit ? number() : at_ + 1;
        case CharacterClass::slash:
            return next() == '/' ? lineComment() : next() == '*' ? blockComment() : at_ + 1;
        case CharacterClass::bracket:
            return next() == '[' ? attribute() : at_ + 1;
        case CharacterClass::quote:
            return string();
        case CharacterClass::hash:
            return beginsLine() ? add(SyntaxKind::preprocessor, lineEnd()) : at_ + 1;
        case CharacterClass::plain:
            break;
        }
        return at_ + 1;
    }

    std::size_t lineEnd() const { return std::min(text_.find('\n', at_), text_.size()); }

    std::size_t name() {
        const std::size_t end = endOfRun(at_ + 1, continuesName);
        if (const auto kind = words_.kindOf(text_.substr(at_, end - at_)))
            add(*kind, end);
        return end;
    }

    std::size_t number() {
        std::size_t end = at_ + 1;
        for (; end < text_.size(); ++end) {
            const char character = text_[end], before = text_[end - 1];
            const bool isSign =
                (character == '+' || character == '-') && (before == 'e' || before == 'E');
            if (!continuesName(character) && character != '.' && !isSign)
                break;
        }
        return add(SyntaxKind::number, end);
    }

    // An unterminated string contains the newline of its line.
    std::size_t string() {
        std::size_t end = at_ + 1;
        while (end < text_.size() && text_[end] != '"' && text_[end] != '\n')
            end += text_[end] == '\\' ? 2 : 1;
        stringEnd_ = std::min(end + 1, text_.size());
        return add(SyntaxKind::string, stringEnd_);
    }

    std::size_t blockComment() {
        const std::size_t close = text_.find("*/", at_ + 2);
        return add(SyntaxKind::comment, close == std::string_view::npos ? text_.size() : close + 2);
    }

    std::size_t lineComment() {
        const std::size_t end = lineEnd();
        const std::size_t key =
            endOfRun(at_ + 2, [](char one) { return one == ' ' || one == '\t'; });
        const bool isHeader =
            key + 1 < end && text_[key] == '@' && classOf(text_[key + 1]) == CharacterClass::letter;
        add(isHeader ? SyntaxKind::header : SyntaxKind::comment, end);
        if (isHeader)
            addKey(key);
        return end;
    }

    void addKey(std::size_t key) {
        const std::size_t end =
            endOfRun(key + 1, [](char one) { return continuesName(one) || one == '-'; });
        tokens_.push_back({SyntaxKind::headerKey, {.location = key, .length = end - key}});
    }

    std::size_t attribute() {
        std::size_t end = at_ + 2;
        while (end < text_.size() && text_[end] != '\n') {
            if (text_[end] == ']' && end + 1 < text_.size() && text_[end + 1] == ']')
                return add(SyntaxKind::attribute, end + 2);
            ++end;
        }
        return add(SyntaxKind::attribute, end);
    }

    std::string_view text_;
    const SyntaxWords& words_;
    std::vector<SyntaxToken> tokens_;
    std::size_t at_ = 0;        // the current byte
    std::size_t stringEnd_ = 0; // of the last string
};

void countInUnits(std::vector<SyntaxToken>& tokens, std::string_view text) {
    UTF16Cursor start(text);
    for (auto& [kind, range] : tokens) {
        const std::size_t end = range.location + range.length;
        range.location = start.unitOf(range.location);
        // A copy, since the next token may begin inside this one.
        range.length = UTF16Cursor(start).unitOf(end) - range.location;
    }
}

} // namespace

const MSLSyntax::Words& MSLSyntax::keywords() {
    return SyntaxWords::keywords();
}

const MSLSyntax::Words& MSLSyntax::types() {
    return SyntaxWords::types();
}

std::vector<SyntaxToken> MSLSyntax::tokens(std::string_view text) {
    std::vector<SyntaxToken> tokens = Tokenizer(text).tokens();
    if (!isASCII(text))
        countInUnits(tokens, text);
    return tokens;
}

} // namespace tarnwick
