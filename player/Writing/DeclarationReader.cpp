// A declaration is a type and a name, followed by one of the marks that can follow there. A type is
// a word with optional template arguments. Types are not looked up, so that unfinished text and
// types of the library are read alike; words that begin statements are no types.
#include "player/Writing/DeclarationReader.h"

#include "TarnwickCore/Findings/CodeText.h"
#include "TarnwickCore/Text/Characters.h"
#include "player/Writing/SourceNames.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick::player {
namespace {

using Kind = CodeToken::Kind;

constexpr std::array<std::string_view, 16> qualifiers{
    "const",    "constant", "constexpr", "static",   "thread", "device",   "threadgroup", "inline",
    "volatile", "kernel",   "vertex",    "fragment", "extern", "unsigned", "METAL_FUNC",  "signed"};
constexpr std::array<std::string_view, 13> statementWords{
    "return", "else", "case",     "default", "break",  "continue", "do",
    "goto",   "new",  "operator", "delete",  "sizeof", "throw"};
constexpr std::array<std::string_view, 4> headerWords{"for", "if", "while", "switch"};

template <std::size_t size>
bool holds(const std::array<std::string_view, size>& words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

} // namespace

bool DeclarationReader::is(std::size_t at, std::string_view mark) const {
    return at < names_.tokens.size() && names_.tokens[at].is(mark);
}

bool DeclarationReader::isWord(std::size_t at) const {
    return at < names_.tokens.size() && names_.tokens[at].kind == Kind::word;
}

std::string_view DeclarationReader::word(std::size_t at) const {
    return isWord(at) ? names_.tokens[at].text : std::string_view();
}

std::size_t DeclarationReader::pair(std::size_t at) const {
    return names_.pairs[at];
}

std::size_t DeclarationReader::byte(std::size_t at) const {
    return at < names_.tokens.size() ? names_.tokens[at].at : text_.size();
}

// After the semicolon, or at the brace that ends or begins a block.
std::size_t DeclarationReader::afterStatement(std::size_t at, std::size_t last) const {
    while (at < last && !is(at, "{") && !is(at, "}"))
        if (is(at++, ";"))
            break;
    return at;
}

// After the ">" for the "<" at `at`; `at` itself if these are no template arguments.
std::size_t DeclarationReader::afterAngles(std::size_t at, std::size_t last) const {
    int depth = 0;
    for (std::size_t index = at; index < last; ++index) {
        if (is(index, "<"))
            ++depth;
        else if (is(index, ">") && --depth == 0)
            return index + 1;
        else if (is(index, ";") || is(index, "{") || is(index, "}") || is(index, "("))
            break;
    }
    return at;
}

// After "[[...]]" groups.
std::size_t DeclarationReader::afterAttributes(std::size_t at, std::size_t last) const {
    while (at + 1 < last && is(at, "[") && is(at + 1, "[") && pair(at) < last)
        at = pair(at) + 1;
    return at;
}

void DeclarationReader::read(std::string_view text, SourceNames& names) {
    names.code = codeText(text);
    names.tokens = codeTokens(names.code);
    names.pairs = bracketPairs(names.tokens);
    DeclarationReader(text, names).block(0, {.last = names.tokens.size(), .end = text.size()});
}

void DeclarationReader::block(std::size_t first, const Scope& scope) {
    for (std::size_t at = first; at < scope.last;)
        at = std::max(at + 1, statement(at, scope));
}

// Reads what begins at token `at` and returns the token after it.
std::size_t DeclarationReader::statement(std::size_t at, const Scope& scope) {
    if (names_.tokens[at].kind == Kind::macro) {
        names_.macros.emplace_back(names_.tokens[at].text);
        return at + 1;
    }
    if (is(at, "{")) {
        const std::size_t close = std::min(pair(at), scope.last);
        block(at + 1, {close, byte(close), true});
        return close + 1;
    }
    const std::string_view first = word(at);
    if (first == "struct" || first == "class" || first == "union" || first == "enum")
        return record(at, scope);
    if (first == "template")
        return afterAngles(at + 1, scope.last);
    if (first == "using" || first == "typedef")
        return alias(at, scope);
    if (holds(headerWords, first))
        return header(at, scope);
    if (first.empty() || holds(statementWords, first))
        return at + 1;
    if (const auto next = declaration(at, scope))
        return *next;
    return afterStatement(at, scope.last);
}

std::size_t DeclarationReader::record(std::size_t at, const Scope& scope) {
    std::size_t name = at + 1;
    if (word(name) == "class" || word(name) == "struct")
        ++name;
    std::size_t open = name;
    while (open < scope.last && !is(open, "{") && !is(open, ";") && !is(open, "="))
        ++open;
    if (!isWord(name) || !is(open, "{"))
        return open + 1;
    const std::size_t close = std::min(pair(open), scope.last);
    SourceRecord made{.name = std::string(word(name)), .variables = {}, .functions = {}};
    if (word(at) == "enum")
        enumerators(open + 1, close, at + 1 == name ? scope.end : 0, made);
    else
        block(open + 1, {close, byte(close), false, &made});
    names_.records.push_back(std::move(made));
    return close + 1;
}

// Those of an enumeration without a scope are names to the byte `end` too; 0: it has a scope.
void DeclarationReader::enumerators(std::size_t at, std::size_t last, std::size_t end,
                                    SourceRecord& made) {
    made.isEnumeration = true;
    while (at < last && isWord(at)) {
        const SourceVariable one{.type = made.name,
                                 .name = std::string(word(at)),
                                 .from = names_.tokens[at].end(),
                                 .to = end};
        made.variables.push_back(one);
        if (end > 0)
            names_.variables.push_back(one);
        while (at < last && !is(at, ","))
            at = is(at, "(") && pair(at) < last ? pair(at) + 1 : at + 1;
        ++at;
    }
}

// using NAME = TYPE; or typedef TYPE NAME;
std::size_t DeclarationReader::alias(std::size_t at, const Scope& scope) {
    const std::size_t next = afterStatement(at, scope.last);
    const auto add = [&](std::size_t name, std::size_t first) {
        names_.records.push_back(
            {.name = std::string(word(name)), .variables = {}, .functions = {}});
        if (const auto target = type(first, next))
            names_.aliases.emplace(word(name), target->text);
    };
    if (word(at) == "using" && isWord(at + 1) && is(at + 2, "="))
        add(at + 1, at + 3);
    else if (word(at) == "typedef" && next >= at + 3 && isWord(next - 2))
        add(next - 2, at + 1);
    return next;
}

// A variable of a header is visible to the end of its statement.
std::size_t DeclarationReader::header(std::size_t at, const Scope& scope) {
    if (!is(at + 1, "("))
        return at + 1;
    const std::size_t close = std::min(pair(at + 1), scope.last);
    std::size_t end = afterStatement(close, scope.last);
    if (is(end, "{"))
        end = std::min(pair(end), scope.last);
    declaration(at + 2, {close, byte(end), true});
    return close + 1;
}

std::optional<DeclarationReader::Type> DeclarationReader::type(std::size_t at,
                                                               std::size_t last) const {
    std::string text;
    at = afterAttributes(at, last);
    for (; holds(qualifiers, word(at)); ++at)
        if (word(at) == "unsigned")
            text = "u";
    if (!isWord(at) || at >= last || holds(statementWords, word(at)))
        return std::nullopt;
    text += word(at++);
    for (; at + 1 < last && is(at, "::") && isWord(at + 1); at += 2)
        text = word(at + 1);
    if (is(at, "<")) {
        const std::size_t next = afterAngles(at, last);
        if (next == at)
            return std::nullopt;
        for (; at < next; ++at)
            text += names_.tokens[at].text;
    }
    while (at < last && (is(at, "*") || is(at, "&") || holds(qualifiers, word(at))))
        ++at;
    if (const auto alias = names_.aliases.find(text); alias != names_.aliases.end())
        text = alias->second;
    return Type{std::move(text), at};
}

std::optional<std::size_t> DeclarationReader::declaration(std::size_t at, const Scope& scope) {
    const auto found = type(at, scope.last);
    if (!found || !isWord(found->next) || found->next >= scope.last)
        return std::nullopt;
    const std::size_t mark = found->next + 1;
    if (is(mark, "(") && !scope.isBody)
        return function(at, *found, scope);
    const bool isVariable =
        mark >= scope.last ||
        std::ranges::any_of(std::array{"=", ";", ",", "[", "{", ":", "("},
                            [&](std::string_view one) { return is(mark, one); });
    if (!isVariable)
        return std::nullopt;
    return variables(*found, scope);
}

// The names of one declaration: int a = 1, b[2];
std::size_t DeclarationReader::variables(const Type& type, const Scope& scope) {
    std::size_t at = type.next;
    while (isWord(at) && at < scope.last) {
        SourceVariable made{.type = type.text,
                            .name = std::string(word(at)),
                            .from = names_.tokens[at].end(),
                            .to = scope.end};
        ++at;
        if (is(at, "[") && !is(at + 1, "["))
            made.type += "[]";
        if (is(at, "="))
            made.valueBegin = at + 1;
        while (at < scope.last && !is(at, ",") && !is(at, ";"))
            at = std::ranges::any_of(std::array{"(", "[", "{"},
                                     [&](std::string_view one) { return is(at, one); }) &&
                         pair(at) < scope.last
                     ? pair(at) + 1
                     : at + 1;
        made.valueEnd = made.valueBegin > 0 ? at : 0;
        if (scope.record != nullptr)
            scope.record->variables.push_back(made);
        else
            names_.variables.push_back(made);
        if (!is(at, ","))
            break;
        ++at;
        while (is(at, "*") || is(at, "&"))
            ++at;
    }
    return at + 1;
}

std::size_t DeclarationReader::function(std::size_t at, const Type& type, const Scope& scope) {
    const std::size_t open = type.next + 1;
    const std::size_t close = std::min(pair(open), scope.last);
    if (close >= scope.last) { // unfinished
        parameters(open + 1, scope.last, scope.end);
        return afterStatement(open, scope.last);
    }
    SourceFunction made{.name = std::string(word(type.next)),
                        .result = type.text,
                        .signature = joined(byte(at), names_.tokens[close].end()),
                        .sentence = sentenceAbove(byte(at))};
    if (scope.record != nullptr)
        scope.record->functions.push_back(std::move(made));
    else
        names_.functions.push_back(std::move(made));
    std::size_t next = afterAttributes(close + 1, scope.last);
    while (word(next) == "const")
        ++next;
    if (!is(next, "{"))
        return next;
    const std::size_t end = std::min(pair(next), scope.last);
    parameters(open + 1, close, byte(end));
    block(next + 1, {end, byte(end), true});
    return end + 1;
}

void DeclarationReader::parameters(std::size_t first, std::size_t last, std::size_t end) {
    for (std::size_t at = first; at < last;) {
        if (const auto found = type(at, last); found && isWord(found->next) && found->next < last)
            names_.variables.push_back({.type = found->text,
                                        .name = std::string(word(found->next)),
                                        .from = byte(found->next),
                                        .to = end});
        for (int depth = 0; at < last; ++at) {
            if (is(at, "(") || is(at, "[") || is(at, "<"))
                ++depth;
            else if (is(at, ")") || is(at, "]") || is(at, ">"))
                --depth;
            else if (depth <= 0 && is(at, ","))
                break;
        }
        ++at;
    }
}

// The code of these bytes in one line.
std::string DeclarationReader::joined(std::size_t begin, std::size_t end) const {
    std::string line;
    for (const char one : std::string_view(names_.code).substr(begin, end - begin))
        if (one > ' ')
            line += one;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    return line;
}

// The first sentence of the comment lines that end in the line above the byte `at`.
std::string DeclarationReader::sentenceAbove(std::size_t at) const {
    std::string sentence;
    std::size_t end = text_.rfind('\n', at);
    while (end != std::string_view::npos && end > 0) {
        const std::size_t before = text_.rfind('\n', end - 1);
        const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
        std::string_view line = trimmed(text_.substr(begin, end - begin));
        if (!line.starts_with("//") || line.find('@') != std::string_view::npos)
            break;
        line.remove_prefix(std::min(line.find_first_not_of('/'), line.size()));
        sentence = std::string(trimmed(line)) + (sentence.empty() ? "" : " ") + sentence;
        end = before;
    }
    const std::size_t stop = sentence.find(". ");
    return stop == std::string::npos ? sentence : sentence.substr(0, stop + 1);
}

} // namespace tarnwick::player
