#include "fuzz/Grammar/Tokens.h"

#include <algorithm>
#include <array>

namespace tarnwick::fuzz {
namespace {

using Text = std::string_view;

// Longer ones first. Brackets are tokens of their own, also those of attributes.
constexpr std::array<Text, 26> longSymbols{
    "<<=", ">>=", "...", "<=>", "->*", "::", "<<", ">>", "<=", ">=", "==", "!=", "&&",
    "||",  "++",  "--",  "+=",  "-=",  "*=", "/=", "%=", "&=", "|=", "^=", "->", "##"};

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::size_t until(Text text, Text end, std::size_t from) {
    const std::size_t found = text.find(end, from);
    return found == Text::npos ? text.size() : found + end.size();
}

// The end of a line that a backslash does not continue, without the line's end.
std::size_t endOfLine(Text text) {
    for (std::size_t at = 0; at < text.size(); ++at)
        if (text[at] == '\n' && text[at - 1] != '\\')
            return at;
    return text.size();
}

std::size_t numberLength(Text text) {
    std::size_t at = 1;
    while (at < text.size()) {
        const char last = text[at - 1];
        const bool isSign = (text[at] == '+' || text[at] == '-') &&
                            (last == 'e' || last == 'E' || last == 'p' || last == 'P');
        if (!isSign && !isLetter(text[at]) && !isDigit(text[at]) && text[at] != '.')
            break;
        ++at;
    }
    return at;
}

std::size_t quotedLength(Text text) {
    for (std::size_t at = 1; at < text.size() && text[at] != '\n'; ++at) {
        if (text[at] == '\\')
            ++at;
        else if (text[at] == text[0])
            return at + 1;
    }
    return 1; // a quotation mark alone
}

std::size_t symbolLength(Text text) {
    for (const Text symbol : longSymbols)
        if (text.starts_with(symbol))
            return symbol.size();
    return 1;
}

template <class Is> std::size_t lengthWhile(Text text, const Is& is) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), is) - text.begin());
}

// The first token of a text that is not empty.
Token firstOf(Text text, bool startsLine) {
    const char c = text[0];
    if (isSpace(c))
        return {TokenKind::space, text.substr(0, lengthWhile(text, isSpace))};
    if (text.starts_with("//"))
        return {TokenKind::comment, text.substr(0, endOfLine(text))};
    if (text.starts_with("/*"))
        return {TokenKind::comment, text.substr(0, until(text, "*/", 2))};
    if (c == '#' && startsLine)
        return {TokenKind::directive, text.substr(0, endOfLine(text))};
    if (isLetter(c))
        return {TokenKind::word, text.substr(0, lengthWhile(text, [](char each) {
                                                 return isLetter(each) || isDigit(each);
                                             }))};
    if (isDigit(c) || (c == '.' && text.size() > 1 && isDigit(text[1])))
        return {TokenKind::number, text.substr(0, numberLength(text))};
    if (c == '"' || c == '\'') {
        const std::size_t length = quotedLength(text);
        return {length > 1 ? TokenKind::text : TokenKind::symbol, text.substr(0, length)};
    }
    if (c == '(' || c == '[' || c == '{')
        return {TokenKind::open, text.substr(0, 1)};
    if (c == ')' || c == ']' || c == '}')
        return {TokenKind::close, text.substr(0, 1)};
    return {TokenKind::symbol, text.substr(0, symbolLength(text))};
}

} // namespace

std::vector<Token> tokensOf(std::string_view text) {
    std::vector<Token> tokens;
    bool startsLine = true;
    while (!text.empty()) {
        const Token token = firstOf(text, startsLine);
        if (token.kind == TokenKind::space)
            startsLine = startsLine || token.text.find('\n') != Text::npos;
        else
            startsLine = false;
        tokens.push_back(token);
        text.remove_prefix(token.text.size());
    }
    return tokens;
}

} // namespace tarnwick::fuzz
