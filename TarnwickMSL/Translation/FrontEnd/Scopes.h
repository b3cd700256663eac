// The brackets of a program's tokens: pairs, and the kind of the braces around a token. Indices
// count tokens.
#pragma once

#include <clang/Lex/Token.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick::msl {

// The identifier or keyword that the token is; null for all others, pragmas too.
const clang::IdentifierInfo* wordOf(const clang::Token& token);

// Whether the token is `device`, `constant`, `thread` or `threadgroup`.
bool isAddressSpace(const clang::Token& token);

enum class ScopeKind : std::uint8_t { namespace_, type, block, list };

class Scopes {
  public:
    explicit Scopes(const std::vector<clang::Token>& tokens);

    // Returns the bracket that closes the one at i, or the last token.
    std::size_t match(std::size_t i) const { return partner[i] ? partner[i] : tokens.size() - 1; }
    bool isOpen(std::size_t i) const { return partner[i] > i; }
    // The kind of the innermost braces around i.
    ScopeKind kindAt(std::size_t i) const { return kinds[i]; }
    // The kind of the braces that open at i.
    ScopeKind kindInside(std::size_t i) const { return braceKind(i, kinds[i]); }
    // The number of open parentheses and brackets at i inside these braces.
    unsigned parenDepthAt(std::size_t i) const { return depths[i]; }
    // Returns the bracket that closes the innermost braces around i, or the last token.
    std::size_t bracesEnd(std::size_t i) const;
    // The end of the declaration that contains i: its `;` or the `}` of its body.
    std::size_t declarationEnd(std::size_t i) const;
    // The end of the scope of a name declared at i. Names of parameters and conditions last to the
    // end of the following body, others to the end of the block.
    std::size_t nameEnd(std::size_t i) const;
    // Whether an `=` precedes i in its declaration (the default value of a member, for instance).
    bool isInitialiser(std::size_t i) const;
    // The `>` that closes the list of template arguments opened by the `<` at i; 0 if it opens
    // none.
    std::size_t angleEnd(std::size_t i) const;

  private:
    const std::vector<clang::Token>& tokens;
    std::vector<std::size_t> partner;
    std::vector<std::size_t> around; // the innermost bracket open at i, or i
    std::vector<ScopeKind> kinds;
    std::vector<unsigned> depths;

    ScopeKind braceKind(std::size_t i, ScopeKind outer) const;
    ScopeKind namedKind(std::size_t i, ScopeKind outer) const;
};

} // namespace tarnwick::msl
