#include "TarnwickMSL/Translation/FrontEnd/Scopes.h"

#include <clang/Basic/IdentifierTable.h>

namespace tarnwick::msl {

namespace tok = clang::tok;

namespace {

bool opens(tok::TokenKind kind) {
    return kind == tok::l_paren || kind == tok::l_square || kind == tok::l_brace;
}

tok::TokenKind closer(tok::TokenKind open) {
    return open == tok::l_paren    ? tok::r_paren
           : open == tok::l_square ? tok::r_square
                                   : tok::r_brace;
}

} // namespace

const clang::IdentifierInfo* wordOf(const clang::Token& token) {
    return token.isAnnotation() ? nullptr : token.getIdentifierInfo();
}

bool isAddressSpace(const clang::Token& token) {
    const clang::IdentifierInfo* name = wordOf(token);
    return name && (name->isStr("device") || name->isStr("constant") || name->isStr("thread") ||
                    name->isStr("threadgroup") || name->isStr("object_data"));
}

Scopes::Scopes(const std::vector<clang::Token>& tokens)
    : tokens(tokens), partner(tokens.size()), around(tokens.size()), kinds(tokens.size()),
      depths(tokens.size()) {
    struct Open {
        std::size_t at;
        ScopeKind outerKind;
        unsigned outerDepth;
    };
    std::vector<Open> open;
    ScopeKind kind = ScopeKind::namespace_;
    unsigned depth = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const tok::TokenKind token = tokens[i].getKind();
        const bool closes =
            token == tok::r_paren || token == tok::r_square || token == tok::r_brace;
        if (closes && !open.empty() && closer(tokens[open.back().at].getKind()) == token) {
            partner[open.back().at] = i;
            partner[i] = open.back().at;
            kind = open.back().outerKind;
            depth = open.back().outerDepth;
            open.pop_back();
        }
        kinds[i] = kind;
        depths[i] = depth;
        around[i] = open.empty() ? i : open.back().at;
        if (!opens(token))
            continue;
        open.push_back({i, kind, depth});
        if (token == tok::l_brace) {
            kind = braceKind(i, kind);
            depth = 0;
        } else {
            ++depth;
        }
    }
}

// The kind of the braces that open at i, by the tokens before them.
ScopeKind Scopes::braceKind(std::size_t i, ScopeKind outer) const {
    if (i == 0)
        return ScopeKind::list;
    std::size_t before = i;
    while (before > 1 && isAddressSpace(tokens[before - 1])) // qualifiers of a method
        --before;
    switch (tokens[before - 1].getKind()) {
    case tok::r_paren:
    case tok::kw_else:
    case tok::kw_do:
    case tok::kw_try:
    case tok::kw_const:
    case tok::kw_noexcept:
    case tok::kw_mutable:
        return ScopeKind::block;
    case tok::semi:
    case tok::l_brace:
    case tok::r_brace:
    case tok::colon:
        // A body after member initialisers follows a brace or a parenthesis.
        return outer == ScopeKind::list ? ScopeKind::list : ScopeKind::block;
    case tok::r_square: {
        const std::size_t square = partner[i - 1];
        const bool isArray = square > 0 && (tokens[square - 1].is(tok::identifier) ||
                                            tokens[square - 1].is(tok::r_square));
        return isArray ? ScopeKind::list : ScopeKind::block;
    }
    case tok::equal:
    case tok::comma:
    case tok::l_paren:
    case tok::kw_return:
        return ScopeKind::list;
    default:
        return namedKind(i, outer);
    }
}

// The kind of braces after a name or a type, by the keyword of their declaration.
ScopeKind Scopes::namedKind(std::size_t i, ScopeKind outer) const {
    for (std::size_t at = i; at-- > 0;) {
        switch (tokens[at].getKind()) {
        case tok::kw_namespace:
            return ScopeKind::namespace_;
        case tok::kw_enum:
            return ScopeKind::list;
        case tok::kw_struct:
        case tok::kw_class:
            if (at > 0 && tokens[at - 1].is(tok::kw_enum))
                return ScopeKind::list;
            if (at > 0 && (tokens[at - 1].is(tok::less) || tokens[at - 1].is(tok::comma)))
                break; // a template's parameter
            return ScopeKind::type;
        case tok::kw_union:
            return ScopeKind::type;
        case tok::arrow:
            return ScopeKind::block; // a trailing result type
        case tok::r_paren:
        case tok::r_square:
            at = partner[at] ? partner[at] : at;
            break;
        case tok::semi:
        case tok::l_brace:
        case tok::r_brace:
        case tok::equal:
        case tok::l_paren:
        case tok::kw_return:
            return outer == ScopeKind::namespace_ && tokens[i - 1].is(tok::string_literal)
                       ? ScopeKind::namespace_ // extern "C"
                       : ScopeKind::list;
        default:
            break;
        }
    }
    return ScopeKind::list;
}

std::size_t Scopes::bracesEnd(std::size_t i) const {
    while (around[i] != i) {
        i = around[i];
        if (tokens[i].is(tok::l_brace))
            return match(i);
    }
    return tokens.size() - 1;
}

std::size_t Scopes::declarationEnd(std::size_t i) const {
    for (; i + 1 < tokens.size(); ++i) {
        if (tokens[i].is(tok::semi) || tokens[i].is(tok::r_brace))
            return i;
        const bool isBody =
            tokens[i].is(tok::l_brace) && braceKind(i, kinds[i]) == ScopeKind::block;
        if (isOpen(i))
            i = match(i);
        if (isBody)
            return i;
    }
    return i;
}

std::size_t Scopes::nameEnd(std::size_t i) const {
    if (kinds[i] != ScopeKind::block && depths[i] == 0)
        return tokens.size(); // `m::Colour` and `S::Colour` may follow anywhere
    return depths[i] > 0 ? declarationEnd(match(around[i]) + 1) : bracesEnd(i);
}

bool Scopes::isInitialiser(std::size_t i) const {
    while (i-- > 0) {
        switch (tokens[i].getKind()) {
        case tok::equal:
            return true;
        case tok::semi:
        case tok::l_brace:
        case tok::r_brace:
            return false;
        default:
            break;
        }
    }
    return false;
}

std::size_t Scopes::angleEnd(std::size_t i) const {
    unsigned open = 0;
    for (; i < tokens.size(); ++i) {
        switch (tokens[i].getKind()) {
        case tok::less:
            ++open;
            break;
        case tok::greater:
            if (--open == 0)
                return i;
            break;
        case tok::greatergreater: // a shift: partClosers has split the closers
            return 0;
        case tok::l_paren:
        case tok::l_square:
            i = match(i);
            break;
        case tok::semi:
        case tok::l_brace:
        case tok::r_brace:
        case tok::r_paren:
        case tok::eof:
            return 0;
        default:
            break;
        }
    }
    return 0;
}

} // namespace tarnwick::msl
