// The numbers in a program's text that can get other values without parsing the program again.
//
// They are the floating-point literals whose values only the generated code depends on. Not among
// them are literals that Clang has evaluated or may evaluate to decide something else: those in
// constant expressions, constexpr functions, types, attributes, and in conversions to integers and
// comparisons of constants, about which it warns.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace clang {
class ASTContext;
class Decl;
class FloatingLiteral;
class FunctionDecl;
class VarDecl;
} // namespace clang

namespace tarnwick::msl {

class Numbers {
  public:
    // `source` is the text of the declarations, the main file of the context.
    Numbers(std::string_view source, clang::ASTContext& context, std::vector<clang::Decl*> program)
        : context(context), program(std::move(program)),
          text(std::make_unique<std::string>(source)) {}

    // If the text differs from the last one in such numbers, and beside them in nothing but spaces
    // and comments within lines, gives the literals their new values. Otherwise returns false, and
    // the program must be parsed. An equal text does not differ: it is parsed again like any other,
    // so that its time can be measured by repetition.
    bool take(std::string_view source);

    // The functions with the literals that the last text changed; absent if some are elsewhere, so
    // that other functions may depend on them.
    const std::optional<std::vector<const clang::FunctionDecl*>>& changed() const {
        return changedFunctions;
    }

  private:
    struct Word {
        std::string_view text;
        unsigned offset = 0, line = 0;
        unsigned kind = 0; // clang::tok::TokenKind
        bool hasSpace = false;
    };
    struct Literal {
        unsigned place; // byte of `text`
        clang::FloatingLiteral* expression;
        const clang::FunctionDecl* function; // whose body has it; null for others
    };
    struct Change;

    clang::ASTContext& context;
    std::vector<clang::Decl*> program;
    std::unique_ptr<const std::string> text; // its place stays, because of the words
    std::vector<Word> words;                 // of `text`; empty until they are needed
    bool isCollected = false;                // whether the two below are filled
    std::vector<Literal> literals;           // by place
    std::vector<clang::VarDecl*> evaluated;  // variables whose initial values Clang keeps
    std::optional<std::vector<const clang::FunctionDecl*>> changedFunctions; // by the last text

    static std::vector<Word> wordsOf(const std::string& text);
    std::optional<unsigned> placeOf(const clang::FloatingLiteral& literal) const;
    void collect();
    bool takeOne(std::string_view source);
    bool takeWords(std::string_view source);
    bool apply(const Change& change);
};

} // namespace tarnwick::msl
