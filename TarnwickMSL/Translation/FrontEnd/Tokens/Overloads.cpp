// Functions that differ only in address spaces. For C++ they have one signature, so the first is
// kept. A function with an equal body is dropped; the body of another moves into the first:
//
//     float f(float* p) { if (metal::_in_device(p)) { the other body } else { the first body } }
//
// The step `address-spaces` answers the question when it knows the variable that `p` points to.

#include "TarnwickMSL/Translation/FrontEnd/Parameters.h"
#include "TarnwickMSL/Translation/FrontEnd/TokenPass.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/Hashing.h>
#include <llvm/ADT/SmallVector.h>

namespace tarnwick::msl {

// The tokens of a function: [first, body) is the declaration, [body, end) the body, which may be
// `= default;`.
struct Definition {
    std::size_t scope = 0, first = 0, body = 0, end = 0;
    bool hasSpaces = false;
    // The `constant` behind a constructor's parameters, which is no part of its C++ type; 0 if it
    // has none.
    std::size_t constructorSpace = 0;
    Parameters parameters;
    // Others with the same body: their parameters.
    llvm::SmallVector<Parameters, 1> repeats;
    // Others with another body.
    std::vector<Definition> others;
};

namespace {

// The tokens of a range without address spaces and the names of parameters.
class Plain {
  public:
    static Plain headOf(llvm::ArrayRef<Token> tokens, const Definition& of) {
        return {tokens, of.first, of.body, of.parameters, of.constructorSpace};
    }
    static Plain bodyOf(llvm::ArrayRef<Token> tokens, const Definition& of) {
        return {tokens, of.body, of.end, {}, 0};
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

    Plain(llvm::ArrayRef<Token> tokens, std::size_t first, std::size_t end,
          llvm::ArrayRef<Parameter> parameters, std::size_t constructorSpace) {
        const auto isName = [&](std::size_t i) {
            return llvm::any_of(parameters,
                                [&](const Parameter& each) { return each.name && each.name == i; });
        };
        for (std::size_t i = first; i < end; ++i)
            if (!isName(i) && (i == 0 || i != constructorSpace))
                add(tokens[i]);
    }
    void add(const Token& token) {
        Word word{token.getKind(), textOf(token)};
        if (isAddressSpace(token)) {
            if (word.text != "constant")
                return;
            word = {tok::kw_const, "const"};
        }
        if (word.kind != tok::kw_const || words.empty() || words.back() != word)
            words.push_back(word);
    }

    static llvm::StringRef textOf(const Token& token) {
        if (token.isLiteral() && token.getLiteralData())
            return {token.getLiteralData(), token.getLength()};
        const IdentifierInfo* name = wordOf(token);
        return name ? name->getName() : "";
    }
};

bool hasSameNames(llvm::ArrayRef<Token> tokens, const Parameters& a, const Parameters& b) {
    const auto nameOf = [&](const Parameter& each) {
        return each.name ? tokens[each.name].getIdentifierInfo() : nullptr;
    };
    return llvm::equal(
        a, b, [&](const Parameter& x, const Parameter& y) { return nameOf(x) == nameOf(y); });
}

// Whether the function, or one that it already is, has the same spaces.
bool hasSameSpaces(const Definition& first, const Definition& found) {
    const auto isSame = [&](const Parameters& other) {
        return other.size() != found.parameters.size() ||
               llvm::equal(other, found.parameters, [](const Parameter& a, const Parameter& b) {
                   return a.space == b.space;
               });
    };
    return isSame(first.parameters) || llvm::any_of(first.others, [&](const Definition& other) {
               return isSame(other.parameters) || llvm::any_of(other.repeats, isSame);
           });
}

// Whether the space of the n-th parameter differs among the functions.
bool differsAt(const Definition& first, std::size_t n) {
    const auto isOther = [&](const Parameters& each) {
        return each[n].space != first.parameters[n].space;
    };
    return llvm::any_of(first.others, [&](const Definition& other) {
        return isOther(other.parameters) || llvm::any_of(other.repeats, isOther);
    });
}

// Whether a body that moves into the first function, or a test, names the n-th parameter.
bool needsName(const Definition& first, std::size_t n) {
    return differsAt(first, n) || llvm::any_of(first.others, [&](const Definition& other) {
               return other.parameters[n].name != 0;
           });
}

// Whether the body that is kept cannot name a parameter that the other body or a test names.
bool lacksNames(const Definition& first, const Definition& found) {
    for (std::size_t n = 0; n + 1 < found.parameters.size(); ++n) {
        const Parameter &own = first.parameters[n], &other = found.parameters[n];
        if (!own.name && !own.nameAt && (other.name || other.space != own.space))
            return true;
    }
    return false;
}

} // namespace

// Whether the parameters of a function, and its object, are in the spaces that `given` has. Tests
// those whose space differs among the functions.
void TokenPass::appendSpaceTest(std::vector<Token>& to, const Definition& first,
                                llvm::ArrayRef<Parameter> given, SourceLocation at) {
    append(to, "( true", at);
    for (std::size_t n = 0; n < given.size(); ++n) {
        const Parameter& own = first.parameters[n];
        const bool isObject = n + 1 == given.size();
        if (!differsAt(first, n))
            continue;
        append(to, ("&& metal :: _in_" + given[n].space + " (").str().c_str(), at);
        if (isObject) {
            append(to, "this", at);
        } else {
            if (own.isReference)
                append(to, "&", at);
            to.push_back(argumentName(first, n));
        }
        append(to, ")", at);
    }
    append(to, ")", at);
}

// The name of the n-th parameter, where it has none: a name that mergeOverloads gives it.
Token TokenPass::argumentName(const Definition& first, std::size_t n) {
    const Parameter& own = first.parameters[n];
    if (own.name)
        return tokens[own.name];
    return make(tok::identifier, tokens[own.nameAt].getLocation(),
                preprocessor.getIdentifierInfo("_argument" + std::to_string(n)));
}

// Moves the tokens of a body, as they are changed.
void TokenPass::moveBody(std::vector<Token>& to, const Definition& from) {
    for (std::size_t i = from.body; i < from.end; ++i)
        appendEdited(to, i);
}

void TokenPass::mergeOverloads(const Definition& first) {
    if (first.others.empty())
        return;
    const SourceLocation at = tokens[first.body].getLocation();
    for (std::size_t n = 0; n + 1 < first.parameters.size(); ++n)
        if (!first.parameters[n].name && needsName(first, n))
            edits[first.parameters[n].nameAt].before.push_back(argumentName(first, n));
    std::vector<Token> chain;
    append(chain, "{", at);
    for (const Definition& other : first.others) {
        append(chain, "if (", at);
        appendSpaceTest(chain, first, other.parameters, at);
        for (const Parameters& repeated : other.repeats) {
            append(chain, "||", at);
            appendSpaceTest(chain, first, repeated, at);
        }
        append(chain, ") {", at);
        for (std::size_t n = 0; n < other.parameters.size(); ++n)
            renameParameter(chain, first, n, other.parameters[n].name, at);
        moveBody(chain, other);
        append(chain, "} else", at);
    }
    std::vector<Token>& before = edits[first.body].before;
    before.insert(before.begin(), chain.begin(), chain.end());
    append(edits[first.end - 1].after, "}", tokens[first.end - 1].getLocation());
    for (const Definition& other : first.others)
        dropEdits(other.first, other.end);
}

// `auto& q = p;`, where the body that moves names the n-th parameter by another name.
void TokenPass::renameParameter(std::vector<Token>& to, const Definition& first, std::size_t n,
                                std::size_t name, SourceLocation at) {
    if (!name || argumentName(first, n).getIdentifierInfo() == tokens[name].getIdentifierInfo())
        return;
    append(to, "auto &", at);
    to.push_back(tokens[name]);
    append(to, "=", at);
    to.push_back(argumentName(first, n));
    append(to, ";", at);
}

void TokenPass::dropEdits(std::size_t from, std::size_t end) {
    for (std::size_t i = from; i < end; ++i)
        edits[i] = {.before = {}, .dropped = true, .after = {}};
}

// Merges the function into one with the same signature. Returns false if no other has it.
bool TokenPass::joinsOverload(llvm::MutableArrayRef<Definition> known, const Definition& found) {
    const llvm::ArrayRef<Token> all(tokens);
    const Plain head = Plain::headOf(all, found);
    const Plain body = Plain::bodyOf(all, found);
    for (Definition& first : known) {
        if (first.scope != found.scope || !(first.hasSpaces || found.hasSpaces) ||
            Plain::headOf(all, first) != head)
            continue;
        const auto isSame = [&](const Definition& other) {
            return hasSameNames(all, other.parameters, found.parameters) &&
                   Plain::bodyOf(all, other) == body;
        };
        const auto same = llvm::find_if(first.others, isSame);
        const bool isRepeated = same != first.others.end() || isSame(first);
        const bool canMove = is(first.body, tok::l_brace) && is(found.body, tok::l_brace) &&
                             !hasSameSpaces(first, found) && !lacksNames(first, found);
        if (!isRepeated && !canMove)
            return false; // Clang reports it
        if (!isRepeated)
            first.others.push_back(found);
        else if (same != first.others.end())
            same->repeats.push_back(found.parameters);
        if (isRepeated)
            dropEdits(found.first, found.end);
        return true;
    }
    return false;
}

// Whether the address space at i qualifies a constructor: `S(float x) constant`.
bool TokenPass::isConstructorSpace(std::size_t i) const {
    if (!isMethodQualifier(i))
        return false;
    while (!is(i, tok::r_paren))
        --i;
    const std::size_t name = scopes.match(i) - 1;
    if (!is(name, tok::identifier))
        return false;
    if (name > 1 && is(name - 1, tok::coloncolon)) // `S::S(float x) constant`
        return wordAt(name) == wordAt(name - 2);
    std::size_t record = scopes.match(scopes.bracesEnd(i));
    while (record > 0 && !tokens[record].isOneOf(tok::kw_struct, tok::kw_class, tok::kw_union))
        --record;
    return wordAt(name) == wordAt(record + 1);
}

Definition TokenPass::definition(std::size_t scope, std::size_t first, std::size_t body,
                                 std::size_t end) const {
    Definition found{scope, first, body, end, false, 0, {}, {}, {}};
    for (std::size_t i = first; i < body; ++i) {
        if (!isAddressSpace(tokens[i]))
            continue;
        found.hasSpaces = true;
        if (isWord(i, "constant") && isConstructorSpace(i))
            found.constructorSpace = i;
    }
    return found;
}

void TokenPass::repeatedFunctions() {
    llvm::DenseMap<std::size_t, llvm::SmallVector<Definition, 1>>
        known; // by the hash of the declaration
    llvm::SmallVector<std::size_t, 8> open{0};
    std::size_t first = 0;
    auto settle = [&](std::size_t body, std::size_t end) {
        const llvm::ArrayRef<Token> all(tokens);
        Definition found = definition(open.back(), first, body, end);
        if (!found.hasSpaces && scopes.kindAt(first) != ScopeKind::type)
            return;
        found.parameters = parametersOf(all, scopes, found.first, found.body);
        auto& others = known[llvm::hash_combine(Plain::headOf(all, found).hash(), found.scope)];
        if (!joinsOverload(others, found))
            others.push_back(std::move(found));
    };
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        if (is(i, tok::l_brace) && scopes.kindInside(i) == ScopeKind::block) {
            const std::size_t end = scopes.match(i) + 1;
            settle(i, end);
            i = end - 1;
        } else if (is(i, tok::l_brace) && scopes.kindInside(i) == ScopeKind::list) {
            i = scopes.match(i);
            continue;
        } else if (is(i, tok::l_brace)) {
            open.push_back(i);
        } else if (is(i, tok::r_brace) && open.size() > 1) {
            open.pop_back();
        } else if (is(i, tok::semi) && is(i - 1, tok::kw_default) && is(i - 2, tok::equal)) {
            settle(i - 2, i + 1); // S() device = default;
        } else if (!is(i, tok::semi)) {
            continue;
        }
        first = i + 1;
    }
    for (auto& [hash, functions] : known)
        for (const Definition& function : functions)
            mergeOverloads(function);
}

} // namespace tarnwick::msl
