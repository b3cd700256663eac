// Function constants (Metal Shading Language 3.1, 5.8). C++ requires a value where a constant is
// defined, so a function constant without a value becomes the declaration of one that is defined
// elsewhere; one with a value becomes an ordinary constant.

#include "TarnwickMSL/Translation/FrontEnd/TokenPass.h"

#include <cmath>
#include <cstdio>

namespace tarnwick::msl {

// The lists of attributes with `function_constant` in the declaration of which i is a token: those
// of its declarators, or the one before the declaration.
llvm::SmallVector<std::size_t, 1> TokenPass::constantAttributes(std::size_t i) const {
    llvm::SmallVector<std::size_t, 1> found;
    auto take = [&](std::size_t open) {
        for (std::size_t j = open + 2; j < scopes.match(open); ++j)
            if (isWord(j, "function_constant"))
                return found.push_back(open);
    };
    for (std::size_t j = i + 1; j < tokens.size() && !is(j, tok::semi) && !is(j, tok::l_brace);
         ++j) {
        if (is(j, tok::l_square) && is(j + 1, tok::l_square))
            take(j);
        if (is(j, tok::l_paren) || is(j, tok::l_square))
            j = scopes.match(j);
    }
    while (i > 0 && wordOf(tokens[i - 1]))
        --i;
    if (i > 1 && is(i - 1, tok::r_square) && is(i - 2, tok::r_square))
        take(scopes.match(i - 1));
    return found;
}

const ConstantValue* TokenPass::valueOf(const IdentifierInfo* name) {
    for (std::size_t n = 0; n < constants.values.size(); ++n)
        if (name && name->getName() == constants.values[n].name) {
            isConstantKnown[n] = true;
            return &constants.values[n];
        }
    return nullptr;
}

void TokenPass::appendNumber(std::vector<Token>& to, const ConstantNumber& value,
                             SourceLocation at) {
    const bool isNegative = value.isReal ? std::signbit(value.real) : value.integer < 0;
    append(to, "(", at);
    if (isNegative)
        to.push_back(make(tok::minus, at));
    if (value.isReal && !std::isfinite(value.real)) {
        append(to, std::isnan(value.real) ? "__builtin_nanf ( \"\" )" : "__builtin_inff ( )", at);
    } else if (value.isReal) {
        char text[40];
        std::snprintf(text, sizeof text, "%af", std::fabs(static_cast<float>(value.real)));
        to.push_back(number(text, at));
    } else {
        const auto bits = static_cast<std::uint64_t>(value.integer);
        const std::uint64_t size = isNegative ? 0 - bits : bits;
        to.push_back(number(std::to_string(size) + (size >> 63 ? "ul" : "l"), at));
    }
    append(to, ")", at);
}

// Appends `= metal::_given<decltype(NAME)>(1, 2, 3)`.
void TokenPass::appendValue(std::vector<Token>& to, const Token& name, const ConstantValue* value) {
    const SourceLocation at = name.getLocation();
    append(to, "= metal :: _given < decltype (", at);
    to.push_back(make(tok::identifier, at, name.getIdentifierInfo()));
    append(to, ") > (", at);
    for (std::size_t n = 0; value && n < value->numbers.size(); ++n) {
        if (n > 0)
            append(to, ",", at);
        appendNumber(to, value->numbers[n], at);
    }
    append(to, ")", at);
}

// Rewrites the declaration of a function constant, whose `constant` is at i. Returns whether it is
// one.
bool TokenPass::functionConstant(std::size_t i) {
    if (scopes.kindAt(i) != ScopeKind::namespace_ || scopes.parenDepthAt(i) > 0)
        return false;
    const auto attributes = constantAttributes(i);
    if (attributes.empty())
        return false;
    for (std::size_t word = i + 1; wordOf(tokens[word]); ++word)
        edits[word].dropped |= tokens[word].isOneOf(tok::kw_static, tok::kw_constexpr);
    for (std::size_t word = i; word > 0 && wordOf(tokens[word - 1]); --word)
        edits[word - 1].dropped |= tokens[word - 1].isOneOf(tok::kw_static, tok::kw_constexpr);
    append(edits[i].after, "extern const", tokens[i].getLocation());
    for (const std::size_t open : attributes) {
        // the last token of the declarator, and the token after it
        const std::size_t last = open > i ? scopes.match(open) : scopes.declarationEnd(i) - 1;
        const Token& name = open > i ? tokens[open - 1] : tokens[last];
        if (is(last + 1, tok::equal) || is(last + 1, tok::l_brace))
            report(last + 1, "a function constant cannot have an initial value");
        const ConstantValue* value = valueOf(wordOf(name));
        if (wordOf(name) && (value || constants.othersAreUndefined))
            appendValue(edits[last].after, name, value);
    }
    return true;
}

// Rewrites `is_function_constant_defined(NAME)` at i to the answer, or to a question for the
// constant's address.
void TokenPass::constantQuery(std::size_t i) {
    if (!is(i + 1, tok::l_paren))
        return;
    const std::size_t close = scopes.match(i + 1);
    const bool hasValue = close > i + 2 && valueOf(wordOf(tokens[close - 1]));
    const SourceLocation at = tokens[i].getLocation();
    if (hasValue || constants.othersAreUndefined) {
        dropRange(qualifiedFirst(i), close + 1);
        append(edits[i].after, hasValue ? "true" : "false", at);
    } else {
        edits[i + 1].after.push_back(make(tok::amp, at));
    }
}

void TokenPass::reportUnknownConstants() {
    for (std::size_t n = 0; n < constants.values.size(); ++n)
        if (!isConstantKnown[n])
            report(0, "the program has no function constant '" + constants.values[n].name + "'");
}

} // namespace tarnwick::msl
