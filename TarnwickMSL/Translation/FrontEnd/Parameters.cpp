#include "TarnwickMSL/Translation/FrontEnd/Parameters.h"

#include <clang/Basic/IdentifierTable.h>

namespace tarnwick::msl {

namespace tok = clang::tok;
using clang::Token;

namespace {

class ParameterReader {
  public:
    ParameterReader(llvm::ArrayRef<Token> tokens, const Scopes& scopes)
        : tokens_(tokens), scopes_(scopes) {}

    Parameters read(std::size_t first, std::size_t body) const;

  private:
    std::size_t opening(std::size_t first, std::size_t body) const;
    Parameter parameter(std::size_t first, std::size_t end) const;
    Parameter object(std::size_t first, std::size_t body) const;
    // The token after the one at i, or after the brackets that it opens.
    std::size_t after(std::size_t i) const {
        const std::size_t angle = tokens_[i].is(tok::less) ? scopes_.angleEnd(i) : 0;
        return (angle ? angle : scopes_.isOpen(i) ? scopes_.match(i) : i) + 1;
    }

    llvm::ArrayRef<Token> tokens_;
    const Scopes& scopes_;
};

// Returns the parenthesis before the parameters, or `body` without parameters.
std::size_t ParameterReader::opening(std::size_t first, std::size_t body) const {
    for (std::size_t i = first; i < body; i = after(i)) {
        const bool isOthers =
            i > first &&
            tokens_[i - 1].isOneOf(tok::kw_operator, tok::kw___attribute, tok::kw_decltype);
        if (tokens_[i].is(tok::l_paren) && !isOthers)
            return i;
    }
    return body;
}

Parameter ParameterReader::parameter(std::size_t first, std::size_t end) const {
    Parameter found;
    bool hasType = false;
    std::size_t i = first;
    for (; i < end && tokens_[i].isNot(tok::equal); ++i) {
        const Token& token = tokens_[i];
        if (const std::size_t angle = token.is(tok::less) ? scopes_.angleEnd(i) : 0)
            i = angle;
        else if (isAddressSpace(token))
            found.space = token.getIdentifierInfo()->getName();
        else if (token.is(tok::amp))
            found.isReference = true;
        else if (token.is(tok::identifier) && hasType &&
                 tokens_[i + 1].isOneOf(tok::comma, tok::r_paren, tok::l_square, tok::equal))
            found.name = i;
        else
            hasType |= token.isNot(tok::kw_const) && wordOf(token);
    }
    if (!found.name && !tokens_[i - 1].isOneOf(tok::r_square, tok::r_paren, tok::ellipsis))
        found.nameAt = i;
    return found;
}

// `float get() const device`
Parameter ParameterReader::object(std::size_t first, std::size_t body) const {
    Parameter found;
    for (std::size_t i = first; i < body; ++i)
        if (isAddressSpace(tokens_[i]))
            found.space = tokens_[i].getIdentifierInfo()->getName();
        else if (tokens_[i].isNot(tok::kw_const))
            break;
    return found;
}

Parameters ParameterReader::read(std::size_t first, std::size_t body) const {
    Parameters all;
    const std::size_t open = opening(first, body);
    if (open == body)
        return all;
    const std::size_t close = scopes_.match(open);
    std::size_t start = open + 1;
    for (std::size_t i = start; i <= close; i = after(i)) {
        if (i != close && tokens_[i].isNot(tok::comma))
            continue;
        if (i > start)
            all.push_back(parameter(start, i));
        start = i + 1;
    }
    all.push_back(object(close + 1, body));
    return all;
}

} // namespace

Parameters parametersOf(llvm::ArrayRef<Token> tokens, const Scopes& scopes, std::size_t first,
                        std::size_t body) {
    return ParameterReader(tokens, scopes).read(first, body);
}

} // namespace tarnwick::msl
