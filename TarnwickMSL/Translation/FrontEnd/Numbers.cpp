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

// One number of a text that has another value in the next text.
struct Edit {
    unsigned place = 0, growth = 0; // bytes; the growth is modulo 2^32
    Number number;
};

// Whether the character can be a part of a number's word, or continue its line behind it.
bool isWordPart(std::string_view text, std::size_t at) {
    const auto letter = static_cast<unsigned char>(text[at]);
    if (letter == '+' || letter == '-')
        return at > 0 && (text[at - 1] == 'e' || text[at - 1] == 'E');
    return llvm::isAlnum(text[at]) || letter >= 0x80 ||
           std::string_view("_.'$\\").find(text[at]) != std::string_view::npos;
}

// The words that contain all differences of two texts, if they are such numbers.
std::optional<Edit> editOf(std::string_view before, std::string_view now) {
    const std::size_t shorter = std::min(before.size(), now.size());
    std::size_t start = 0, behind = 0; // equal characters before and after the differences
    while (start < shorter && before[start] == now[start])
        ++start;
    while (behind < shorter - start &&
           before[before.size() - 1 - behind] == now[now.size() - 1 - behind])
        ++behind;
    while (start > 0 && isWordPart(before, start - 1))
        --start;
    while (behind > 0 && isWordPart(before, before.size() - behind))
        --behind;
    const auto old = numberIn(before.substr(start, before.size() - behind - start));
    const auto number = numberIn(now.substr(start, now.size() - behind - start));
    if (!old || !number || old->suffix != number->suffix)
        return std::nullopt;
    return Edit{static_cast<unsigned>(start), static_cast<unsigned>(now.size() - before.size()),
                *number};
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

// A literal at this byte of the last text gets another value.
struct Numbers::Change {
    unsigned place;
    Number number;
};

std::optional<unsigned> Numbers::placeOf(const clang::FloatingLiteral& literal) const {
    const clang::SourceManager& sources = context.getSourceManager();
    const clang::SourceLocation at = usersPlace(sources, literal.getLocation());
    if (at.isMacroID() || sources.getFileID(at) != sources.getMainFileID())
        return std::nullopt;
    return sources.getFileOffset(at);
}

void Numbers::collect() {
    if (std::exchange(isCollected, true))
        return;
    Collector collector(context);
    for (clang::Decl* declaration : program)
        collector.TraverseDecl(declaration);
    if (!collector.isAnyFree)
        return;
    std::vector<unsigned> kept;
    for (const clang::FloatingLiteral* literal : collector.kept)
        if (const auto place = placeOf(*literal))
            kept.push_back(*place);
    std::ranges::sort(kept);
    for (const auto& [literal, function] : collector.free)
        if (const auto place = placeOf(*literal);
            place && !std::ranges::binary_search(kept, *place))
            literals.push_back({*place, literal, function});
    std::ranges::stable_sort(literals, {}, &Literal::place);
    evaluated = std::move(collector.evaluated);
}

// False if no literal there can change.
bool Numbers::apply(const Change& change) {
    const auto found = std::ranges::equal_range(literals, change.place, {}, &Literal::place);
    for (const Literal& literal : found) {
        literal.expression->setValue(context, change.number.value);
        literal.expression->setExact(change.number.isExact);
        if (!literal.function)
            changedFunctions.reset();
        else if (changedFunctions)
            changedFunctions->push_back(literal.function);
    }
    return !found.empty();
}

// The texts differ in one number, which has the same characters around it in both: then all other
// words are the same. False if they differ otherwise, or if the number is no literal that can
// change.
bool Numbers::takeOne(std::string_view source) {
    const auto edit = editOf(*text, source);
    if (!edit)
        return false;
    collect();
    if (!apply({edit->place, edit->number}))
        return false;
    for (Literal& literal : literals)
        if (literal.place > edit->place)
            literal.place += edit->growth;
    text = std::make_unique<const std::string>(source);
    words.clear();
    return true;
}

bool Numbers::takeWords(std::string_view source) {
    if (words.empty())
        words = wordsOf(*text);
    auto fresh = std::make_unique<const std::string>(source);
    std::vector<Word> freshWords = wordsOf(*fresh);
    if (words.size() != freshWords.size())
        return false;
    std::vector<Change> changes;
    for (unsigned i = 0; i < words.size(); ++i) {
        const Word &before = words[i], &now = freshWords[i];
        if (before.kind != now.kind || before.line != now.line || before.hasSpace != now.hasSpace)
            return false;
        if (before.text == now.text)
            continue;
        const auto old = numberIn(before.text), number = numberIn(now.text);
        if (!old || !number || old->suffix != number->suffix)
            return false;
        changes.push_back({before.offset, *number});
    }
    if (changes.empty())
        return false;
    collect();
    for (const Change& change : changes)
        if (!apply(change))
            return false;
    for (Literal& literal : literals) {
        const auto word = std::ranges::lower_bound(words, literal.place, {}, &Word::offset);
        if (word == words.end() || word->offset != literal.place)
            return false;
        literal.place = freshWords[static_cast<std::size_t>(word - words.begin())].offset;
    }
    text = std::move(fresh);
    words = std::move(freshWords);
    return true;
}

bool Numbers::take(std::string_view source) {
    // Most other texts are told apart without looking at their words.
    if (source == *text || std::ranges::count(source, '\n') != std::ranges::count(*text, '\n'))
        return false;
    changedFunctions.emplace();
    return (takeOne(source) || takeWords(source)) && std::ranges::all_of(evaluated, staysConstant);
}

} // namespace tarnwick::msl
