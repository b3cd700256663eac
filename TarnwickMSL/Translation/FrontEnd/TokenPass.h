// The pass behind Tokens.h. It visits the tokens once, notes the changes of each, and writes the
// result at the end, so that indices and locations stay valid. Tokens.cpp has the pass itself,
// Constructors.cpp the constructors of vectors, Overloads.cpp the overloads that differ only in
// address spaces, ConstantTokens.cpp the function constants, Components.cpp the references to
// components of vectors.
#pragma once

#include "TarnwickMSL/Constants.h"
#include "TarnwickMSL/Translation/FrontEnd/Parameters.h"
#include "TarnwickMSL/Translation/FrontEnd/Scopes.h"
#include "TarnwickMSL/Translation/FrontEnd/TypeNames.h"

#include <clang/Lex/Preprocessor.h>
#include <clang/Lex/Token.h>
#include <llvm/ADT/DenseSet.h>
#include <llvm/ADT/SmallPtrSet.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::msl {

using clang::IdentifierInfo;
using clang::SourceLocation;
using clang::Token;
namespace tok = clang::tok;

// The changes at one token: `before` + the token, unless dropped, + `after`.
struct Edit {
    std::vector<Token> before;
    bool dropped = false;
    std::vector<Token> after;
};
struct Definition; // Overloads.cpp

class TokenPass {
  public:
    TokenPass(clang::Preprocessor& preprocessor, std::vector<Token> tokens,
              const ConstantValues& constants)
        : preprocessor(preprocessor), tokens(std::move(tokens)), edits(this->tokens.size()),
          scopes(this->tokens), constants(constants), isConstantKnown(constants.values.size()) {}

    std::vector<Token> run();

  private:
    std::vector<Token> result() const;
    void appendEdited(std::vector<Token>& to, std::size_t i) const;
    clang::Preprocessor& preprocessor;
    std::vector<Token> tokens;
    std::vector<Edit> edits;
    Scopes scopes;
    const ConstantValues& constants;
    std::vector<bool> isConstantKnown; // for each value: whether the program has the constant
    TypeNames names;                   // declared in the program
    std::size_t typedefName = 0;
    llvm::SmallPtrSet<const IdentifierInfo*, 4> misnamed; // keywords used as names
    // Vector members, with the end of their record's braces; and the colons of member initialisers,
    // which may precede the members.
    llvm::DenseSet<std::pair<std::size_t, const IdentifierInfo*>> vectorMembers;
    llvm::SmallPtrSet<const IdentifierInfo*, 16> vectorMemberNames;
    std::vector<std::size_t> initialiserLists;
    bool isCoherent = false;                   // some pointer is
    bool ownsUniform = false;                  // the program declares a name `uniform`
    std::size_t entryOpen = 0, entryClose = 0; // the parentheses around an entry point's arguments

    bool is(std::size_t i, tok::TokenKind kind) const {
        return i < tokens.size() && tokens[i].is(kind);
    }
    const IdentifierInfo* wordAt(std::size_t i) const {
        return i < tokens.size() ? wordOf(tokens[i]) : nullptr;
    }
    bool isWord(std::size_t i, llvm::StringRef text) const {
        const IdentifierInfo* name = wordAt(i);
        return name && name->getName() == text;
    }
    Token make(tok::TokenKind kind, SourceLocation at, IdentifierInfo* name = nullptr) const;
    void append(std::vector<Token>& to, const char* words, SourceLocation at);

    // The tokens `[first, end)` of the vector type that begins at i.
    // A deduced type, `decltype(v)`, may be an array too: braces after it are left to C++.
    struct TypeSpan {
        std::size_t first = 0, end = 0;
        bool isDeduced = false;
    };
    std::optional<TypeSpan> constructedType(std::size_t i) const;
    // The vector type at i with namespaces and qualifiers before it, `const metal::float4`. `span`
    // excludes these; `end` is the token after the type.
    struct WrittenType {
        TypeSpan span;
        std::size_t end = 0;
    };
    std::optional<WrittenType> writtenType(std::size_t i) const;

    void learnTemplateParameters(std::size_t i);
    void learnAlias(std::size_t i);
    static bool endsType(const Token& token);
    bool declaresName(std::size_t i) const;
    void learnName(std::size_t i);
    bool isMethodQualifier(std::size_t i) const;
    bool isUsedAsName(std::size_t i) const;
    bool isNameNotKeyword(std::size_t i);
    std::size_t coherentLength(std::size_t i) const;
    bool hasCoherence() const;
    bool declaresUniform() const;
    bool hasArguments(std::size_t open, unsigned count) const;
    const char* libraryWord(std::size_t i) const;
    bool isThreadgroupVariable(std::size_t i) const;
    bool hasInitialValue(std::size_t i) const;
    void qualifier(std::size_t i);
    void entryPoint(std::size_t i);
    void attributeArguments(std::size_t i);
    bool unrollAttribute(std::size_t i);
    std::size_t attributeListEnd(std::size_t i) const;
    bool missingAttribute(std::size_t i);
    void explicitInstantiation(std::size_t i);
    void report(std::size_t i, const std::string& message,
                clang::DiagnosticsEngine::Level level = clang::DiagnosticsEngine::Error);
    llvm::SmallVector<std::size_t, 1> constantAttributes(std::size_t i) const;
    const ConstantValue* valueOf(const IdentifierInfo* name);
    void appendNumber(std::vector<Token>& to, const ConstantNumber& value, SourceLocation at);
    void appendValue(std::vector<Token>& to, const Token& name, const ConstantValue* value);
    bool functionConstant(std::size_t i);
    void constantQuery(std::size_t i);
    void reportUnknownConstants();
    void literal(std::size_t i);
    Token number(llvm::StringRef text, SourceLocation at) const;
    void forbidden(std::size_t i);
    bool declaresReference(std::size_t i) const;
    bool takesAddress(std::size_t i) const;
    void component(std::size_t i);
    void arraySizes(std::size_t i);
    void repeatedFunctions();
    bool joinsOverload(llvm::MutableArrayRef<Definition> known, const Definition& found);
    void mergeOverloads(const Definition& first);
    void appendSpaceTest(std::vector<Token>& to, const Definition& first,
                         llvm::ArrayRef<Parameter> given, SourceLocation at);
    Token argumentName(const Definition& first, std::size_t n);
    void renameParameter(std::vector<Token>& to, const Definition& first, std::size_t n,
                         std::size_t name, SourceLocation at);
    bool isConstructorSpace(std::size_t i) const;
    Definition definition(std::size_t scope, std::size_t first, std::size_t body,
                          std::size_t end) const;
    void moveBody(std::vector<Token>& to, const Definition& from);
    void dropEdits(std::size_t from, std::size_t end);
    void swizzleTimes(std::size_t i);
    std::size_t qualifiedFirst(std::size_t first) const;
    std::size_t qualifierEnd(std::size_t i) const;
    std::size_t templateFirst(std::size_t close) const;
    std::optional<TypeSpan> tracedType(std::size_t i) const;
    bool isNoValue(std::size_t i, std::size_t open) const;
    std::size_t type(std::size_t i, TypeSpan span);
    std::size_t plainArguments(std::size_t open) const;
    bool braceScalars(TypeSpan span, std::size_t open);
    void callMake(std::size_t i, TypeSpan span, std::size_t open);
    void declarators(TypeSpan span, std::size_t name);
    void initialise(TypeSpan span, std::size_t open, bool needsEquals);
    void initialiseArray(TypeSpan span, std::size_t open, unsigned dimensions);
    bool isVectorMember(std::size_t name) const;
    void memberInitialisers(std::size_t colon);
    // The class of the vectors `vec<bool, N>` and `vec<bfloat, N>` at i; null for other types.
    const char* vectorClass(std::size_t i) const {
        if (!isWord(i, "vec") || !is(i + 3, tok::comma))
            return nullptr;
        return is(i + 2, tok::kw_bool)   ? "bool_vector"
               : isWord(i + 2, "bfloat") ? "bfloat_vector"
                                         : nullptr;
    }
    void cast(std::size_t open);
    void staticCast(std::size_t i);
    bool beginsOperand(std::size_t i) const;
    std::size_t unaryEnd(std::size_t i) const;
    bool hasNestedBraces(std::size_t open) const;
    bool hasComma(std::size_t open) const;
    void openMake(std::vector<Token>& to, TypeSpan span, SourceLocation at);
    void dropRange(std::size_t from, std::size_t end);
    bool looksLikeArguments(std::size_t open) const;
    bool isParenthesised(std::size_t open) const;
};

} // namespace tarnwick::msl
