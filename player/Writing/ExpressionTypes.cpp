#include "player/Writing/ExpressionTypes.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int deepest = 12; // expressions in expressions

bool isSwizzle(std::string_view member) {
    return !member.empty() && member.size() <= 4 &&
           (member.find_first_not_of("xyzw") == std::string_view::npos ||
            member.find_first_not_of("rgba") == std::string_view::npos);
}

std::string elementOf(std::string_view type) {
    if (type.ends_with("[]"))
        return std::string(type.substr(0, type.size() - 2));
    const VectorShape shape = vectorShape(type);
    if (shape.components > 1)
        return std::string(shape.element);
    // A column of a matrix, float3 of float4x3.
    const std::size_t cross = type.size() > 3 ? type.size() - 2 : 0;
    if (cross > 0 && type[cross] == 'x')
        return std::string(type.substr(0, cross - 1)) + type.back();
    return {};
}

std::string resultOf(std::string_view signature) {
    return std::string(signature.substr(0, signature.find(' ')));
}

} // namespace

std::string ExpressionTypes::ofMember(std::string_view type, std::string_view member) const {
    if (const VectorShape shape = vectorShape(type); shape.components > 0)
        return !isSwizzle(member)   ? std::string()
               : member.size() == 1 ? std::string(shape.element)
                                    : std::string(shape.element) + std::to_string(member.size());
    if (const SourceRecord* record = names_.record(typeName(type))) {
        for (const SourceVariable& one : record->variables)
            if (one.name == member)
                return one.type;
        for (const SourceFunction& one : record->functions)
            if (one.name == member)
                return one.result;
    }
    const msl::LibraryName* row = libraryRow(typeName(type), member);
    return row != nullptr ? resultOf(row->signatures) : std::string();
}

std::string ExpressionTypes::operand(std::size_t last, int depth) const {
    const auto& tokens = own_.tokens;
    if (depth > deepest || last >= tokens.size())
        return {};
    const CodeToken& token = tokens[last];
    if (token.kind == CodeToken::Kind::number)
        return token.text.find('.') != std::string_view::npos ? "float" : "int";
    if (token.is("]")) {
        const std::size_t open = own_.pairs[last];
        return open > 0 && open < last ? elementOf(operand(open - 1, depth + 1)) : std::string();
    }
    if (token.is(")")) {
        const std::size_t open = own_.pairs[last];
        return open < last ? call(open, last, depth + 1) : std::string();
    }
    if (token.is("}")) { // Ring{0.5}
        const std::size_t open = own_.pairs[last];
        const bool isNamed =
            open > 0 && open < last && tokens[open - 1].kind == CodeToken::Kind::word;
        return isNamed ? std::string(tokens[open - 1].text) : std::string();
    }
    if (token.kind != CodeToken::Kind::word)
        return {};
    if (last >= 2 && (tokens[last - 1].is(".") || tokens[last - 1].is("->")))
        return ofMember(operand(last - 2, depth + 1), token.text);
    return variable(token.text, token.at, depth);
}

std::string ExpressionTypes::variable(std::string_view name, std::size_t at, int depth) const {
    const SourceVariable* found = own_.variable(name, at);
    if (found == nullptr)
        return {};
    return found->type == "auto" ? expression(found->valueBegin, found->valueEnd, depth + 1)
                                 : found->type;
}

// The result of a call, the type of a constructor, or that of an expression in parentheses.
std::string ExpressionTypes::call(std::size_t open, std::size_t close, int depth) const {
    const auto& tokens = own_.tokens;
    if (open == 0 || tokens[open - 1].kind != CodeToken::Kind::word)
        return expression(open + 1, close, depth);
    const std::string_view name = tokens[open - 1].text;
    if (open >= 3 && (tokens[open - 2].is(".") || tokens[open - 2].is("->")))
        return ofMember(operand(open - 3, depth), name);
    if (const SourceFunction* function = own_.function(name))
        return function->result;
    if (names_.record(name) != nullptr || vectorShape(name).components > 0)
        return std::string(name);
    const msl::LibraryName* row = libraryRow("", name);
    if (row == nullptr)
        return {};
    if (row->kind == msl::LibraryName::Kind::type)
        return std::string(name);
    const std::string result = resultOf(row->signatures),
                      first = expression(open + 1, close, depth);
    if (result == "T")
        return first;
    if (result == "E")
        return elementOf(first);
    return result;
}

bool ExpressionTypes::endsOperand(std::size_t at, std::size_t end) const {
    const CodeToken& token = own_.tokens[at];
    if (token.kind == CodeToken::Kind::mark && !token.is(")") && !token.is("]") && !token.is("}"))
        return false;
    return at + 1 >= end ||
           (own_.tokens[at + 1].kind == CodeToken::Kind::mark && !own_.tokens[at + 1].is(".") &&
            !own_.tokens[at + 1].is("->") && !own_.tokens[at + 1].is("(") &&
            !own_.tokens[at + 1].is("[") && !own_.tokens[at + 1].is("{"));
}

// Operators and functions of the library join vectors with scalars: the widest operand decides.
std::string ExpressionTypes::expression(std::size_t first, std::size_t end, int depth) const {
    std::string widest;
    if (depth > deepest)
        return widest;
    for (std::size_t at = first; at < std::min(end, own_.tokens.size()); ++at) {
        const std::size_t pair = own_.pairs[at];
        if (pair > at && pair < end) // inner brackets belong to their operand
            at = pair;
        if (!endsOperand(at, end))
            continue;
        const std::string type = operand(at, depth + 1);
        const bool isFloat = vectorShape(type).element == "float";
        const std::size_t old = vectorShape(widest).components;
        const std::size_t now = vectorShape(type).components;
        if (widest.empty() || now > old || (now == old && isFloat))
            widest = type;
    }
    return widest;
}

} // namespace tarnwick::player
