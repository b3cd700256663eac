#include "TarnwickMSL/Translation/FrontEnd/Warnings.h"

#include <clang/AST/RecursiveASTVisitor.h>
#include <clang/Basic/SourceManager.h>
#include <llvm/ADT/DenseSet.h>

#include <optional>

namespace tarnwick::msl {
namespace {

class Warner : public clang::RecursiveASTVisitor<Warner> {
  public:
    Warner(clang::ASTContext& context, llvm::StringRef file) : context(context), file(file) {}

    bool VisitBinaryOperator(clang::BinaryOperator* operation);
    bool VisitImplicitCastExpr(clang::ImplicitCastExpr* cast);
    bool VisitDeclRefExpr(clang::DeclRefExpr* name);
    bool VisitFunctionDecl(clang::FunctionDecl* function);
    void reportParameters();

  private:
    clang::ASTContext& context;
    llvm::StringRef file;
    llvm::DenseSet<const clang::FunctionDecl*> calledFromOutside;
    std::vector<const clang::FunctionDecl*> functions;

    bool isInFile(clang::SourceLocation at) const {
        const clang::PresumedLoc place = context.getSourceManager().getPresumedLoc(at);
        return place.isValid() && file == place.getFilename();
    }
    void report(clang::SourceLocation at, const char* message, llvm::StringRef first,
                llvm::StringRef second = "", llvm::StringRef third = "") {
        clang::DiagnosticsEngine& diagnostics = context.getDiagnostics();
        const unsigned id =
            diagnostics.getDiagnosticIDs()->getCustomDiagID(clang::DiagnosticIDs::Warning, message);
        if (isInFile(at))
            diagnostics.Report(at, id) << first << second << third;
    }
};

const clang::BinaryOperator* integerDivision(const clang::Expr* expression) {
    const auto* operation = llvm::dyn_cast<clang::BinaryOperator>(expression->IgnoreParens());
    return operation && operation->getOpcode() == clang::BO_Div &&
                   operation->getType()->isIntegerType()
               ? operation
               : nullptr;
}

// `1`, `-1` and `1u`.
std::optional<std::int64_t> literal(const clang::Expr* expression) {
    expression = expression->IgnoreParenImpCasts();
    if (const auto* negated = llvm::dyn_cast<clang::UnaryOperator>(expression);
        negated && negated->getOpcode() == clang::UO_Minus) {
        const auto value = literal(negated->getSubExpr());
        return value ? std::optional(-*value) : std::nullopt;
    }
    const auto* number = llvm::dyn_cast<clang::IntegerLiteral>(expression);
    return number && number->getValue().getActiveBits() < 63
               ? std::optional(static_cast<std::int64_t>(number->getValue().getZExtValue()))
               : std::nullopt;
}

// `1 / 2`.
bool Warner::VisitBinaryOperator(clang::BinaryOperator* operation) {
    if (!integerDivision(operation))
        return true;
    const auto left = literal(operation->getLHS()), right = literal(operation->getRHS());
    if (left && right && *right != 0 && *left % *right != 0)
        report(operation->getOperatorLoc(),
               "integer division: %0 / %1 is %2; a number with a decimal point keeps the fraction",
               std::to_string(*left), std::to_string(*right), std::to_string(*left / *right));
    return true;
}

// `float x = i / 2;`. An explicit conversion, `float(i / 2)`, is intended.
bool Warner::VisitImplicitCastExpr(clang::ImplicitCastExpr* cast) {
    if (cast->getCastKind() != clang::CK_IntegralToFloating)
        return true;
    const clang::BinaryOperator* division = integerDivision(cast->getSubExpr());
    if (division && !cast->isPartOfExplicitCast() &&
        !(literal(division->getLHS()) && literal(division->getRHS())))
        report(division->getOperatorLoc(),
               "integer division drops the fraction before the result becomes a '%0'",
               cast->getType().getUnqualifiedType().getAsString());
    return true;
}

bool Warner::VisitDeclRefExpr(clang::DeclRefExpr* name) {
    const auto* function = llvm::dyn_cast<clang::FunctionDecl>(name->getDecl());
    if (function && !isInFile(name->getLocation()))
        calledFromOutside.insert(function->getCanonicalDecl());
    return true;
}

bool Warner::VisitFunctionDecl(clang::FunctionDecl* function) {
    if (function->isThisDeclarationADefinition() && !function->isDefaulted() &&
        !function->isDeleted())
        functions.push_back(function);
    return true;
}

void Warner::reportParameters() {
    for (const clang::FunctionDecl* function : functions) {
        if (calledFromOutside.contains(function->getCanonicalDecl()))
            continue;
        for (const clang::ParmVarDecl* parameter : function->parameters())
            if (parameter->getIdentifier() && !parameter->isReferenced() &&
                !parameter->hasAttr<clang::UnusedAttr>())
                report(parameter->getLocation(), "unused parameter '%0'", parameter->getName());
    }
}

} // namespace

void warnMore(clang::ASTContext& context, const std::vector<clang::Decl*>& program,
              llvm::StringRef file) {
    Warner warner(context, file);
    for (clang::Decl* declaration : program)
        warner.TraverseDecl(declaration);
    warner.reportParameters();
}

} // namespace tarnwick::msl
