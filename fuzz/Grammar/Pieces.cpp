#include "fuzz/Grammar/Pieces.h"

#include "fuzz/Grammar/Words.h"

#include <algorithm>

namespace tarnwick::fuzz {
namespace {

bool isBlank(const Token& token) {
    return token.kind == TokenKind::space || token.kind == TokenKind::comment;
}

char partnerOf(char bracket) {
    return bracket == '(' ? ')' : bracket == '[' ? ']' : '}';
}

// Words that go on with the statement that a brace ended.
bool continues(const Token& token) {
    return token.is("else") || token.is("while") || token.is(";") || token.is(",") ||
           token.is(")") || token.is("(") || token.is(".");
}

} // namespace

Program::Program(std::string_view text) : text(text), tokens(tokensOf(text)) {
    pair();
    divide(0, tokens.size(), declarations);
    findStatements();
    findBodies();
    findNames();
    findExpressions();
    for (std::size_t at = 0; at < tokens.size(); ++at)
        if (tokens[at].kind == TokenKind::word)
            words.push_back(at);
        else if (tokens[at].kind == TokenKind::number)
            numbers.push_back(at);
        else if (tokens[at].kind == TokenKind::symbol)
            operators.push_back(at);
}

std::string_view Program::textOf(Piece piece) const {
    if (piece.first >= piece.last)
        return {};
    const char* begin = tokens[piece.first].text.data();
    const std::string_view end = tokens[piece.last - 1].text;
    return {begin, static_cast<std::size_t>(end.data() + end.size() - begin)};
}

std::string Program::with(Piece piece, std::string_view other) const {
    const std::string_view old = textOf(piece);
    const auto start = static_cast<std::size_t>(
        piece.first < tokens.size() ? tokens[piece.first].text.data() - text.data() : text.size());
    std::string result(text.substr(0, start));
    result += other;
    return result += text.substr(start + old.size());
}

Piece Program::around(std::size_t token) const {
    const auto found =
        std::ranges::find_if(declarations, [&](const Piece& piece) { return token < piece.last; });
    return found == declarations.end() ? Piece{0, tokens.size()} : *found;
}

std::size_t Program::after(std::size_t token) const {
    do
        ++token;
    while (token < tokens.size() && isBlank(tokens[token]));
    return std::min(token, tokens.size());
}

std::size_t Program::before(std::size_t token) const {
    while (token-- > 0)
        if (!isBlank(tokens[token]))
            return token;
    return tokens.size();
}

bool Program::is(std::size_t token, std::string_view other) const {
    return token < tokens.size() && tokens[token].text == other;
}

void Program::pair() {
    partners.resize(tokens.size());
    std::vector<std::size_t> open;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        partners[at] = at;
        if (tokens[at].kind == TokenKind::open) {
            open.push_back(at);
        } else if (tokens[at].kind == TokenKind::close && !open.empty() &&
                   partnerOf(tokens[open.back()].text[0]) == tokens[at].text[0]) {
            partners[at] = open.back();
            partners[open.back()] = at;
            open.pop_back();
        }
    }
}

// A piece ends after a semicolon, after braces, and after a directive. Blanks before it belong to
// no piece.
void Program::divide(std::size_t first, std::size_t last, std::vector<Piece>& pieces) {
    std::size_t start = first;
    const auto end = [&](std::size_t at) {
        pieces.push_back({start, at});
        start = at;
    };
    for (std::size_t at = first; at < last; ++at) {
        if (start == at && isBlank(tokens[at])) {
            ++start;
        } else if (tokens[at].kind == TokenKind::directive || tokens[at].is(";")) {
            end(at + 1);
        } else if (tokens[at].kind == TokenKind::open && partners[at] > at) {
            const bool isBlock = tokens[at].is("{");
            at = partners[at];
            std::size_t next = at + 1;
            while (next < last && isBlank(tokens[next]))
                ++next;
            if (isBlock && (next == last || !continues(tokens[next])))
                end(at + 1);
        }
    }
}

void Program::findStatements() {
    for (std::size_t at = 0; at < tokens.size(); ++at)
        if (tokens[at].is("{") && partners[at] > at)
            divide(at + 1, partners[at], statements);
}

void Program::findBodies() {
    isInBody.assign(tokens.size(), false);
    for (std::size_t at = 0; at < tokens.size(); ++at)
        if (tokens[at].is("{") && partners[at] > at)
            std::fill(isInBody.begin() + static_cast<std::ptrdiff_t>(at),
                      isInBody.begin() + static_cast<std::ptrdiff_t>(partners[at]), true);
    for (std::size_t at = 0; at < tokens.size(); ++at)
        if (tokens[at].is("[") && is(at + 1, "[") && partners[at] > at)
            std::fill(isInBody.begin() + static_cast<std::ptrdiff_t>(at),
                      isInBody.begin() + static_cast<std::ptrdiff_t>(partners[at]), false);
}

// A name after another word or after the end of a template's arguments is declared there:
// `float x`, `device float* out`, `array<int, 3> list`.
void Program::findNames() {
    isDeclared.assign(tokens.size(), false);
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        if (tokens[at].kind != TokenKind::word || !classOf(tokens[at].text).empty() ||
            isOfLibrary(tokens[at].text))
            continue;
        const std::size_t last = before(at);
        if (is(last, ".") || is(last, "->") || is(last, "::"))
            continue;
        names.push_back(at);
        const bool isAfterWord = last < tokens.size() && tokens[last].kind == TokenKind::word &&
                                 !tokens[last].is("return") && !tokens[last].is("else") &&
                                 !tokens[last].is("case");
        const bool isAfterStar = (is(last, "*") || is(last, "&")) && before(last) < tokens.size() &&
                                 !classOf(tokens[before(last)].text).empty();
        isDeclared[at] = isAfterWord || isAfterStar;
    }
}

void Program::addExpression(std::size_t first, std::size_t last) {
    while (first < last && isBlank(tokens[first]))
        ++first;
    while (first < last && isBlank(tokens[last - 1]))
        --last;
    if (first < last && isInBody[first])
        expressions.push_back({first, last});
}

// Whether a word is of the statements that have a condition in brackets.
bool Program::isStatementHead(std::size_t token) const {
    return is(token, "if") || is(token, "for") || is(token, "while") || is(token, "switch");
}

void Program::findExpressions() {
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        const Token& token = tokens[at];
        const std::size_t next = after(at);
        const bool isType = next < tokens.size() && tokens[next].kind == TokenKind::word;
        const bool isName =
            std::ranges::binary_search(names, at) && !isDeclared[at] && !isType && !is(next, "(");
        if (isName || token.kind == TokenKind::number)
            addExpression(at, at + 1);
        const std::size_t end = partners[at];
        if (token.kind == TokenKind::open && end > at && !token.is("{")) {
            const bool isCall =
                at > 0 && tokens[at - 1].kind == TokenKind::word && !isStatementHead(at - 1);
            if (isCall && !isDeclared[at - 1])
                addExpression(at - 1, end + 1);
            else if (token.is("(") && !isStatementHead(before(at)))
                addExpression(at, end + 1);
            std::size_t start = at + 1;
            for (std::size_t inner = at + 1; inner < end;
                 inner = std::max(inner, partners[inner]) + 1)
                if (tokens[inner].is(",") || tokens[inner].is(";")) {
                    addExpression(start, inner);
                    start = inner + 1;
                }
            addExpression(start, end);
        }
        if (token.is("=") || token.is("return")) {
            std::size_t last = at + 1;
            while (last < tokens.size() && !tokens[last].is(";") && !tokens[last].is(",") &&
                   !(tokens[last].kind == TokenKind::close))
                last = std::max(last, partners[last]) + 1;
            addExpression(at + 1, std::min(last, tokens.size()));
        }
    }
}

} // namespace tarnwick::fuzz
