#include "TarnwickMSL/Translation/FrontEnd/Closers.h"

#include <clang/Basic/IdentifierTable.h>
#include <clang/Lex/Token.h>
#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/ADT/SmallVector.h>

#include <algorithm>

namespace tarnwick::msl {

namespace {

namespace tok = clang::tok;
using clang::IdentifierInfo;
using clang::Token;

class Lists {
  public:
    // Call with each token in order. Returns the number of argument lists that the token may close.
    unsigned closedBy(const Token& token, const Token& before);

  private:
    struct Open {
        unsigned lists = 0, ofHeaders = 0; // `ofHeaders` of the `lists` are in template<...>
    };
    Open open;
    llvm::SmallVector<Open, 16> outer; // the states outside the open parentheses and brackets
    llvm::SmallPtrSet<const IdentifierInfo*, 16> templates; // declared in the program
    bool isAfterHeader = false;

    void learn(const Token& token, const Token& before);
    bool opensList(const Token& before) const;
};

const IdentifierInfo* nameOf(const Token& token) {
    return token.is(tok::identifier) ? token.getIdentifierInfo() : nullptr;
}

void Lists::learn(const Token& token, const Token& before) {
    const bool isRecord = before.isOneOf(tok::kw_struct, tok::kw_class, tok::kw_using);
    if (isRecord && nameOf(token))
        templates.insert(nameOf(token));
    if (isAfterHeader && token.is(tok::l_paren) && nameOf(before))
        templates.insert(nameOf(before));
    if (token.isOneOf(tok::l_paren, tok::l_brace, tok::semi))
        isAfterHeader = false;
}

bool Lists::opensList(const Token& before) const {
    if (before.isOneOf(tok::kw_template, tok::kw_static_cast))
        return true;
    const IdentifierInfo* name = nameOf(before);
    return name && (open.ofHeaders > 0 || templates.contains(name) || name->isStr("vec") ||
                    name->isStr("array"));
}

unsigned Lists::closedBy(const Token& token, const Token& before) {
    learn(token, before);
    if (token.isOneOf(tok::l_paren, tok::l_square)) {
        outer.push_back(open);
        open = {};
    } else if (token.isOneOf(tok::r_paren, tok::r_square) && !outer.empty()) {
        open = outer.pop_back_val();
    } else if (token.isOneOf(tok::semi, tok::l_brace, tok::r_brace)) {
        open = {};
    } else if (token.is(tok::less) && opensList(before)) {
        open.ofHeaders += before.is(tok::kw_template) || open.ofHeaders > 0;
        open.lists++;
    } else if (open.lists > 0 && token.isOneOf(tok::greater, tok::greatergreater)) {
        const unsigned closed = token.is(tok::greater) ? 1 : 2;
        isAfterHeader = isAfterHeader || (open.ofHeaders > 0 && open.ofHeaders <= closed);
        open.lists -= std::min(open.lists, closed);
        open.ofHeaders -= std::min(open.ofHeaders, closed);
        return closed;
    }
    return 0;
}

} // namespace

void partClosers(std::vector<Token>& tokens) {
    std::vector<Token> parted;
    parted.reserve(tokens.size() + 16);
    Lists lists;
    Token before;
    before.startToken();
    for (const Token& token : tokens) {
        const unsigned closed = lists.closedBy(token, before);
        parted.push_back(token);
        if (closed == 2) {
            parted.back().setKind(tok::greater);
            parted.back().setLength(1);
            parted.push_back(parted.back());
            parted.back().setLocation(token.getLocation().getLocWithOffset(1));
        }
        before = token;
    }
    tokens = std::move(parted);
}

} // namespace tarnwick::msl
