// Functions that differ only in address spaces. For C++ they have one signature. If their bodies
// are equal, the first is kept; otherwise Clang reports a redefinition.

#include "TarnwickMSL/Translation/FrontEnd/TokenPass.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/Hashing.h>
#include <llvm/ADT/SmallVector.h>

namespace tarnwick::msl {

namespace {

// The tokens of a function: [first, body) is the declaration, [body, end) the body.
struct Definition {
    std::size_t scope = 0, first = 0, body = 0, end = 0;
};

// The tokens of a range without address spaces.
class Plain {
  public:
    Plain(llvm::ArrayRef<Token> tokens, std::size_t first, std::size_t end) {
        for (const Token& token : tokens.slice(first, end - first)) {
            Word word{token.getKind(), textOf(token)};
            if (isAddressSpace(token)) {
                if (word.text != "constant")
                    continue;
                word = {tok::kw_const, "const"};
            }
            if (word.kind != tok::kw_const || words.empty() || words.back() != word)
                words.push_back(word);
        }
    }

    llvm::hash_code hash() const {
        llvm::hash_code all(0);
        for (const Word& word : words)
            all = llvm::hash_combine(all, word.kind, word.text);
        return all;
    }
    bool operator==(const Plain&) const = default;

  private:
    struct Word {
        tok::TokenKind kind;
        llvm::StringRef text;
        bool operator==(const Word&) const = default;
    };
    llvm::SmallVector<Word, 64> words;

    static llvm::StringRef textOf(const Token& token) {
        if (token.isLiteral() && token.getLiteralData())
            return {token.getLiteralData(), token.getLength()};
        const IdentifierInfo* name = token.isAnnotation() ? nullptr : token.getIdentifierInfo();
        return name ? name->getName() : "";
    }
};

} // namespace

void TokenPass::repeatedFunctions() {
    llvm::DenseMap<std::size_t, llvm::SmallVector<Definition, 1>>
        known; // by the hash of the declaration
    llvm::SmallVector<std::size_t, 8> open{0};
    std::size_t first = 0;
    auto settle = [&](const Definition& found) {
        const llvm::ArrayRef<Token> all(tokens);
        if (llvm::none_of(all.slice(found.first, found.body - found.first), isAddressSpace))
            return;
        const Plain head(all, found.first, found.body);
        auto& others = known[llvm::hash_combine(head.hash(), found.scope)];
        for (const Definition& other : others)
            if (other.scope == found.scope &&
                Plain(all, other.first, other.end) == Plain(all, found.first, found.end)) {
                for (std::size_t i = found.first; i < found.end; ++i)
                    edits[i] = {.before = {}, .dropped = true, .after = {}};
                return;
            }
        others.push_back(found);
    };
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        if (is(i, tok::l_brace) && scopes.kindAt(i + 1) == ScopeKind::block) {
            const std::size_t end = scopes.match(i) + 1;
            settle({open.back(), first, i, end});
            i = end - 1;
        } else if (is(i, tok::l_brace) && scopes.kindAt(i + 1) == ScopeKind::list) {
            i = scopes.match(i);
            continue;
        } else if (is(i, tok::l_brace)) {
            open.push_back(i);
        } else if (is(i, tok::r_brace) && open.size() > 1) {
            open.pop_back();
        } else if (!is(i, tok::semi)) {
            continue;
        }
        first = i + 1;
    }
}

} // namespace tarnwick::msl
