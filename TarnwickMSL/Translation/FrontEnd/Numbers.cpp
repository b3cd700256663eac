#include "TarnwickMSL/Translation/FrontEnd/Numbers.h"

#include "TarnwickMSL/Translation/FrontEnd/TokenPlaces.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/RecursiveASTVisitor.h>
#include <clang/Basic/SourceManager.h>
#include <clang/Lex/Lexer.h>
#include <llvm/ADT/StringExtras.h>

#include <algorithm>
#include <optional>

namespace tarnwick::msl {
namespace {

// Collects literals. While `fixed` is not zero, those below must keep their values.
class Collector : public clang::RecursiveASTVisitor<Collector> {
  public:
    explicit Collector(clang::ASTContext& context) : context(context) {}

    struct Found {
        clang::FloatingLiteral* literal;
        const clang::FunctionDecl* function; // whose body has it; null for others
    };
    std::vector<Found> free;
    std::vector<clang::FloatingLiteral*> kept;
    std::vector<clang::VarDecl*> evaluated;
    bool isAnyFree = true; // false if constants of the program decide more than code

    bool shouldVisitTemplateInstantiations() const { return true; }

    bool TraverseAttr(clang::Attr*) { return true; }
    bool TraverseType(clang::QualType) { return true; }
    bool TraverseTypeLoc(clang::TypeLoc) { return true; }
    bool TraverseTemplateArgument(const clang::TemplateArgument&) { return true; }
    bool TraverseTemplateArgumentLoc(const clang::TemplateArgumentLoc&) { return true; }
    bool TraverseStmt(clang::Stmt* statement, DataRecursionQueue* = nullptr) {
        const auto* expression = llvm::dyn_cast_if_present<clang::Expr>(statement);
        return inside(expression && isDecided(*expression),
                      [&] { return RecursiveASTVisitor::TraverseStmt(statement); });
    }
    bool TraverseDecl(clang::Decl* declaration) {
        const clang::FunctionDecl* around = function;
        if (declaration && !llvm::isa<clang::VarDecl>(declaration))
            function = llvm::dyn_cast<clang::FunctionDecl>(declaration);
        if (declaration && llvm::isa<clang::ParmVarDecl>(declaration))
            function = nullptr; // its default argument is a part of the callers
        const bool goesOn = inside(declaration && isConstant(*declaration),
                                   [&] { return RecursiveASTVisitor::TraverseDecl(declaration); });
        function = around;
        return goesOn;
    }
    bool VisitFloatingLiteral(clang::FloatingLiteral* literal) {
        const bool isFloat = &literal->getSemantics() == &llvm::APFloat::IEEEsingle();
        if (fixed || !isFloat)
            kept.push_back(literal);
        else
            free.push_back({literal, function});
        return true;
    }
    bool VisitDeclRefExpr(clang::DeclRefExpr* name) {
        isAnyFree = isAnyFree && !(fixed && llvm::isa<clang::VarDecl>(name->getDecl()));
        return true;
    }
    bool VisitFunctionDecl(clang::FunctionDecl* function) { // parameters belong to its type
        for (clang::ParmVarDecl* parameter : function->parameters())
            TraverseDecl(parameter);
        return true;
    }
    bool VisitVarDecl(clang::VarDecl* variable) {
        if (variable->getEvaluatedStmt() && !variable->isConstexpr() && variable->getInit() &&
            !variable->getInit()->isValueDependent())
            evaluated.push_back(variable);
        return true;
    }

  private:
    clang::ASTContext& context;
    unsigned fixed = 0;
    const clang::FunctionDecl* function = nullptr; // around what is visited

    template <class F> bool inside(bool isFixed, F traverse) {
        fixed += isFixed;
        const bool goesOn = traverse();
        fixed -= isFixed;
        return goesOn;
    }
    static bool isConstant(const clang::Decl& declaration);
    bool isDecided(const clang::Expr& expression) const;
};

bool Collector::isConstant(const clang::Decl& declaration) {
    if (const auto* variable = llvm::dyn_cast<clang::VarDecl>(&declaration))
        return variable->isConstexpr();
    if (const auto* function = llvm::dyn_cast<clang::FunctionDecl>(&declaration))
        return function->isConstexpr();
    return llvm::isa<clang::FieldDecl, clang::EnumConstantDecl, clang::StaticAssertDecl>(
        declaration);
}

// Whether Clang looks at the expression's value while it parses.
bool Collector::isDecided(const clang::Expr& expression) const {
    if (llvm::isa<clang::ConstantExpr, clang::LambdaExpr>(expression))
        return true;
    const auto* cast = llvm::dyn_cast<clang::CastExpr>(&expression);
    if (cast && (cast->getCastKind() == clang::CK_FloatingToIntegral ||
                 cast->getCastKind() == clang::CK_FloatingToBoolean))
        return !cast->getSubExpr()->isValueDependent() &&
               cast->getSubExpr()->isEvaluatable(context);
    const auto* operation = llvm::dyn_cast<clang::BinaryOperator>(&expression);
    return operation && operation->isComparisonOp() && !operation->isValueDependent() &&
           operation->isEvaluatable(context);
}

// Lets Clang evaluate the variable's initial value again. False if it is a constant now and was
// none before, or the reverse: after an overflow, for instance.
bool staysConstant(const clang::VarDecl* variable) {
    clang::EvaluatedStmt* value = variable->getEvaluatedStmt();
    const bool wasConstant = value->HasConstantInitialization;
    value->WasEvaluated = false;
    value->Evaluated = clang::APValue();
    if (!wasConstant && !variable->hasGlobalStorage())
        return true;
    value->HasConstantInitialization = false;
    llvm::SmallVector<clang::PartialDiagnosticAt, 4> reasons;
    return variable->checkForConstantInitialization(reasons) == wasConstant;
}

bool isSuffix(char letter) {
    return letter == 'f' || letter == 'F' || letter == 'h' || letter == 'H';
}

// The value and the suffix of a decimal floating-point literal of float or half. Absent for other
// numbers, and for those that are rounded to infinity or that lose digits near zero, about which
// Clang warns.
struct Number {
    llvm::APFloat value{0.0f};
    std::string_view suffix;
    bool isExact = false;
};
std::optional<Number> numberIn(std::string_view word) {
    const std::size_t end = !word.empty() && isSuffix(word.back()) ? word.size() - 1 : word.size();
    const std::string_view digits = word.substr(0, end);
    if (digits.find_first_not_of("0123456789.eE+-") != digits.npos ||
        digits.find_first_of(".eE") == digits.npos || !llvm::isDigit(digits.back()))
        return std::nullopt;
    llvm::APFloat value(llvm::APFloat::IEEEsingle());
    auto status =
        value.convertFromString(llvm::StringRef(digits), llvm::APFloat::rmNearestTiesToEven);
    if (!status) {
        llvm::consumeError(status.takeError());
        return std::nullopt;
    }
    if (*status & (llvm::APFloat::opOverflow | llvm::APFloat::opUnderflow))
        return std::nullopt;
    return Number{value, word.substr(end), *status == llvm::APFloat::opOK};
}

} // namespace

std::vector<Numbers::Word> Numbers::wordsOf(const std::string& text) {
    static const clang::LangOptions language = [] {
        clang::LangOptions options;
        options.CPlusPlus = options.LineComment = true;
        return options;
    }();
    clang::Lexer lexer(clang::SourceLocation(), language, text.data(), text.data(),
                       text.data() + text.size());
    std::vector<Word> words;
    const char* counted = text.data();
    unsigned line = 1;
    for (bool isEnd = false; !isEnd;) {
        clang::Token token;
        isEnd = lexer.LexFromRawLexer(token);
        const char* const begin = lexer.getBufferLocation() - token.getLength();
        line += static_cast<unsigned>(std::count(counted, begin, '\n'));
        counted = begin;
        words.push_back({{begin, token.getLength()},
                         static_cast<unsigned>(begin - text.data()),
                         line,
                         token.getKind(),
                         token.hasLeadingSpace()});
    }
    return words;
}

std::optional<unsigned> Numbers::wordAt(const clang::FloatingLiteral& literal) const {
    const clang::SourceManager& sources = context.getSourceManager();
    const clang::SourceLocation at = usersPlace(sources, literal.getLocation());
    if (at.isMacroID() || sources.getFileID(at) != sources.getMainFileID())
        return std::nullopt;
    const unsigned offset = sources.getFileOffset(at);
    const auto found = std::ranges::lower_bound(words, offset, {}, &Word::offset);
    if (found == words.end() || found->offset != offset)
        return std::nullopt;
    return static_cast<unsigned>(found - words.begin());
}

void Numbers::collect() {
    if (std::exchange(isCollected, true))
        return;
    Collector collector(context);
    for (clang::Decl* declaration : program)
        collector.TraverseDecl(declaration);
    if (!collector.isAnyFree)
        return;
    for (const auto& [literal, function] : collector.free)
        if (const auto word = wordAt(*literal))
            byWord[*word].push_back({literal, function});
    for (const clang::FloatingLiteral* literal : collector.kept)
        if (const auto word = wordAt(*literal))
            byWord.erase(*word);
    evaluated = std::move(collector.evaluated);
}

bool Numbers::take(std::string_view source) {
    // Most other texts are told apart without looking at their words.
    if (source == *text || std::ranges::count(source, '\n') != std::ranges::count(*text, '\n'))
        return false;
    if (words.empty())
        words = wordsOf(*text);
    auto fresh = std::make_unique<const std::string>(source);
    std::vector<Word> freshWords = wordsOf(*fresh);
    if (words.size() != freshWords.size())
        return false;
    std::vector<std::pair<unsigned, Number>> changes; // by index in `words`
    for (unsigned i = 0; i < words.size(); ++i) {
        const Word &before = words[i], &now = freshWords[i];
        if (before.kind != now.kind || before.line != now.line || before.hasSpace != now.hasSpace)
            return false;
        if (before.text == now.text)
            continue;
        const auto old = numberIn(before.text), number = numberIn(now.text);
        if (!old || !number || old->suffix != number->suffix)
            return false;
        changes.emplace_back(i, *number);
    }
    if (changes.empty())
        return false;
    collect();
    changedWords.clear();
    for (const auto& [word, number] : changes) {
        const auto found = byWord.find(word);
        if (found == byWord.end())
            return false;
        for (const Literal& literal : found->second) {
            literal.expression->setValue(context, number.value);
            literal.expression->setExact(number.isExact);
        }
        changedWords.push_back(word);
    }
    text = std::move(fresh);
    words = std::move(freshWords);
    return std::ranges::all_of(evaluated, staysConstant);
}

std::optional<std::vector<const clang::FunctionDecl*>> Numbers::changed() const {
    std::vector<const clang::FunctionDecl*> functions;
    for (const unsigned word : changedWords)
        for (const Literal& literal : byWord.find(word)->second) {
            if (!literal.function)
                return std::nullopt;
            functions.push_back(literal.function);
        }
    return functions;
}

} // namespace tarnwick::msl
