// The brackets of a program's tokens: which belong together, and what the braces around a token
// are.
#pragma once

#include <clang/Lex/Token.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick::msl {

// Whether the token is `device`, `constant`, `thread` or `threadgroup`.
bool isAddressSpace(const clang::Token& token);

enum class ScopeKind : std::uint8_t { namespace_, type, block, list };

class Scopes {
  public:
    explicit Scopes(const std::vector<clang::Token>& tokens);

    // The bracket that closes what the one at i opens, or the last token.
    std::size_t match(std::size_t i) const { return partner[i] ? partner[i] : tokens.size() - 1; }
    bool isOpen(std::size_t i) const { return partner[i] > i; }
    // What the innermost braces around i are.
    ScopeKind kindAt(std::size_t i) const { return kinds[i]; }
    // Parentheses open at i, counted from those braces.
    unsigned parenDepthAt(std::size_t i) const { return depths[i]; }
    // The bracket that closes the innermost braces around i, or the last token.
    std::size_t bracesEnd(std::size_t i) const;
    // Where the declaration ends that the token at i is in: its `;`, or the `}` of its body.
    std::size_t declarationEnd(std::size_t i) const;
    // Where what a name stands for ends that is declared at i: the names of parameters and of
    // conditions in parentheses last to the end of the body behind, others to the end of the block.
    std::size_t nameEnd(std::size_t i) const;
    // Whether an `=` stands before i in its declaration (a member's default value, say).
    bool isInitialiser(std::size_t i) const;
    // The `>` that ends the template arguments that the `<` at i opens; 0 where it opens none.
    std::size_t angleEnd(std::size_t i) const;

  private:
    const std::vector<clang::Token>& tokens;
    std::vector<std::size_t> partner;
    std::vector<std::size_t> around; // the innermost bracket that is open at i; i where none is
    std::vector<ScopeKind> kinds;
    std::vector<unsigned> depths;

    ScopeKind braceKind(std::size_t i, ScopeKind outer) const;
    ScopeKind namedKind(std::size_t i, ScopeKind outer) const;
};

} // namespace tarnwick::msl
