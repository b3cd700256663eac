#include "player/Writing/CodeTokens.h"

#include "TarnwickCore/Findings/Words.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

bool isDigit(char one) {
    return one >= '0' && one <= '9';
}

// The end of the preprocessor line at `at`, with the lines that continue it.
std::size_t endOfDirective(std::string_view code, std::size_t at) {
    for (std::size_t end = code.find('\n', at); end != std::string_view::npos;
         end = code.find('\n', end + 1)) {
        std::size_t last = end;
        if (last > at && code[last - 1] == '\r')
            --last;
        if (last == at || code[last - 1] != '\\')
            return end;
    }
    return code.size();
}

std::size_t endOfNumber(std::string_view code, std::size_t at) {
    std::size_t end = at;
    while (end < code.size() &&
           (isWordCharacter(code[end]) || code[end] == '.' ||
            ((code[end] == '+' || code[end] == '-') && (code[end - 1] | 0x20) == 'e')))
        ++end;
    return end;
}

void addMacro(std::string_view directive, std::size_t at, std::vector<CodeToken>& tokens) {
    const std::size_t define = findWord(directive, "define");
    if (define == std::string_view::npos)
        return;
    const std::size_t name = directive.find_first_not_of(" \t", define + 6);
    if (name == std::string_view::npos || wordAt(directive, name).empty())
        return;
    tokens.push_back({CodeToken::Kind::macro, at + name, wordAt(directive, name)});
}

} // namespace

std::vector<CodeToken> codeTokens(std::string_view code) {
    std::vector<CodeToken> tokens;
    for (std::size_t at = 0; at < code.size();) {
        const char one = code[at];
        std::size_t end = at + 1;
        if (one == '#') {
            end = endOfDirective(code, at);
            addMacro(code.substr(at, end - at), at, tokens);
        } else if (isDigit(one) || (one == '.' && end < code.size() && isDigit(code[end]))) {
            end = endOfNumber(code, at + 1);
            tokens.push_back({CodeToken::Kind::number, at, code.substr(at, end - at)});
        } else if (isWordCharacter(one)) {
            end = at + wordAt(code, at).size();
            tokens.push_back({CodeToken::Kind::word, at, code.substr(at, end - at)});
        } else if (one > ' ') {
            const std::string_view two = code.substr(at, 2);
            end = at + (two == "::" || two == "->" ? 2 : 1);
            tokens.push_back({CodeToken::Kind::mark, at, code.substr(at, end - at)});
        }
        at = end;
    }
    return tokens;
}

std::vector<std::size_t> bracketPairs(const std::vector<CodeToken>& tokens) {
    constexpr std::string_view opening = "([{", closing = ")]}";
    std::vector<std::size_t> pairs(tokens.size(), tokens.size()), open;
    for (std::size_t index = 0; index < tokens.size(); ++index) {
        if (tokens[index].kind != CodeToken::Kind::mark)
            continue;
        const char one = tokens[index].text[0];
        if (opening.find(one) != std::string_view::npos) {
            open.push_back(index);
            continue;
        }
        const std::size_t kind = closing.find(one);
        if (kind == std::string_view::npos)
            continue;
        // A brace also closes brackets inside of it that were left open.
        const auto match = std::find_if(open.rbegin(), open.rend(), [&](std::size_t at) {
            return tokens[at].text[0] == opening[kind];
        });
        if (match == open.rend() || (one != '}' && match != open.rbegin()))
            continue;
        pairs[index] = *match;
        pairs[*match] = index;
        open.erase(std::prev(match.base()), open.end());
    }
    return pairs;
}

} // namespace tarnwick::player
