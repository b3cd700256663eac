#include "player/Writing/CallHelp.h"

#include "TarnwickCore/Findings/Words.h"
#include "player/Writing/Completion.h"
#include "player/Writing/ExpressionTypes.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

std::vector<std::string> linesIn(std::string_view text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

std::optional<CallHelp> helpOf(const msl::LibraryName* row) {
    if (row == nullptr || row->signatures.find('(') == std::string_view::npos)
        return std::nullopt;
    return CallHelp{linesIn(row->signatures), std::string(row->sentence), 0, {}};
}

std::optional<CallHelp> helpAmong(const std::vector<SourceFunction>& functions,
                                  std::string_view name) {
    CallHelp help;
    for (const SourceFunction& one : functions)
        if (one.name == name) {
            help.signatures.push_back(one.signature);
            if (help.sentence.empty())
                help.sentence = one.sentence;
        }
    return help.signatures.empty() ? std::nullopt : std::optional(std::move(help));
}

// Of the function whose name is token `at`.
std::optional<CallHelp> helpOf(const WritingNames& names, std::size_t at) {
    const auto& tokens = names.own.tokens;
    const std::string_view name = tokens[at].text;
    std::optional<CallHelp> help;
    if (at >= 2 && (tokens[at - 1].is(".") || tokens[at - 1].is("->"))) {
        const std::string type = ExpressionTypes(names).ofOperand(at - 2);
        if (const SourceRecord* record = names.record(typeName(type)))
            help = helpAmong(record->functions, name);
        if (!help)
            help = helpOf(libraryRow(typeName(type), name));
    } else {
        help = helpAmong(names.own.functions, name);
        if (!help)
            help = helpOf(libraryRow("", name));
    }
    if (help)
        help->at = tokens[at].at;
    return help;
}

std::optional<CallHelp> callAround(const WritingNames& names, std::size_t at) {
    const auto& tokens = names.own.tokens;
    auto index = static_cast<std::size_t>(std::ranges::lower_bound(tokens, at, {}, &CodeToken::at) -
                                          tokens.begin());
    std::size_t argument = 0;
    while (index-- > 0) {
        const CodeToken& token = tokens[index];
        if (token.is(")") || token.is("]") || token.is("}")) {
            if (names.own.pairs[index] >= index)
                return std::nullopt;
            index = names.own.pairs[index];
        } else if (token.is(",")) {
            ++argument;
        } else if (token.is(";") || token.is("{")) {
            return std::nullopt;
        } else if (token.is("(")) {
            auto help = index > 0 && tokens[index - 1].kind == CodeToken::Kind::word
                            ? helpOf(names, index - 1)
                            : std::nullopt;
            if (help) {
                help->argument = argument;
                return help;
            }
            argument = 0; // parentheses of an expression
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<CallHelp> callAround(std::string_view text, std::size_t at) {
    if (isOutsideCode(text, at))
        return std::nullopt;
    return callAround(WritingNames(text), at);
}

std::optional<CallHelp> functionAt(std::string_view text, std::size_t at) {
    at = std::min(at, text.size());
    if (isOutsideCode(text, at))
        return std::nullopt;
    const WritingNames names(text);
    const std::size_t begin = at - wordBefore(text, at).size();
    const auto found = std::ranges::find(names.own.tokens, begin, &CodeToken::at);
    if (found != names.own.tokens.end() && found->kind == CodeToken::Kind::word)
        if (auto help = helpOf(names, static_cast<std::size_t>(found - names.own.tokens.begin())))
            return help;
    return callAround(names, at);
}

std::pair<std::size_t, std::size_t> argumentRange(std::string_view signature,
                                                  std::size_t argument) {
    const std::size_t open = signature.find('(');
    if (open == std::string_view::npos)
        return {0, 0};
    std::size_t begin = open + 1, count = 0;
    for (std::size_t at = begin, depth = 0; at < signature.size(); ++at) {
        const char one = signature[at];
        const bool isEnd = one == ')' && depth == 0;
        if (isEnd || (one == ',' && depth == 0)) {
            if (count == argument)
                return {signature[begin] == ' ' ? begin + 1 : begin, at};
            if (isEnd)
                return {0, 0};
            ++count;
            begin = at + 1;
        } else if (one == '(' || one == '<') {
            ++depth;
        } else if ((one == ')' || one == '>') && depth > 0) {
            --depth;
        }
    }
    return {0, 0};
}

} // namespace tarnwick::player
