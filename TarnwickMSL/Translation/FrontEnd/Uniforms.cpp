#include "TarnwickMSL/Translation/FrontEnd/Uniforms.h"

#include "TarnwickMSL/Translation/FrontEnd/Messages.h"

#include <clang/AST/DeclTemplate.h>
#include <clang/AST/RecursiveASTVisitor.h>

namespace tarnwick::msl {
namespace {

constexpr llvm::StringLiteral libraryName = "msl_uniform"; // Library/types/uniforms.h

// Whether the type is written as uniform. For Clang it is an alias, which a type keeps where it is
// deduced by no template.
bool isUniform(clang::QualType type) {
    while (const auto* alias = type->getAs<clang::TemplateSpecializationType>()) {
        const clang::TemplateDecl* of = alias->getTemplateName().getAsTemplateDecl();
        if (of && of->getName() == libraryName)
            return true;
        if (!alias->isTypeAlias())
            return false;
        type = alias->getAliasedType();
    }
    return false;
}

// Whether a call such as msl_make<uniform<float3>>(v), a constructor, names a uniform type.
bool makesUniform(const clang::CallExpr& call) {
    const auto* callee =
        llvm::dyn_cast_if_present<clang::DeclRefExpr>(call.getCallee()->IgnoreParenImpCasts());
    return callee && llvm::any_of(callee->template_arguments(), [](const auto& argument) {
               return argument.getArgument().getKind() == clang::TemplateArgument::Type &&
                      isUniform(argument.getTypeSourceInfo()->getType());
           });
}

class UniformChecker : public clang::RecursiveASTVisitor<UniformChecker> {
  public:
    explicit UniformChecker(clang::ASTContext& context) : context(context) {}

    bool shouldVisitTemplateInstantiations() const { return true; }

    bool VisitVarDecl(clang::VarDecl* variable) {
        check(variable->getType(), variable->getInit());
        return true;
    }
    bool VisitBinaryOperator(clang::BinaryOperator* operation) {
        if (operation->isAssignmentOp())
            check(operation->getLHS()->getType(), operation->getRHS());
        return true;
    }
    bool VisitCallExpr(clang::CallExpr* call) {
        const clang::FunctionDecl* callee = call->getDirectCallee();
        const bool isOperator = llvm::isa<clang::CXXOperatorCallExpr>(call);
        if (callee && !isOperator)
            for (unsigned i = 0; i < std::min(call->getNumArgs(), callee->getNumParams()); ++i)
                check(callee->getParamDecl(i)->getType(), call->getArg(i));
        return true;
    }
    bool TraverseFunctionDecl(clang::FunctionDecl* function) {
        return inside(function->getReturnType(),
                      [&] { return RecursiveASTVisitor::TraverseFunctionDecl(function); });
    }
    bool TraverseCXXMethodDecl(clang::CXXMethodDecl* method) {
        return inside(method->getReturnType(),
                      [&] { return RecursiveASTVisitor::TraverseCXXMethodDecl(method); });
    }
    bool TraverseLambdaExpr(clang::LambdaExpr* lambda) {
        return inside(lambda->getCallOperator()->getReturnType(),
                      [&] { return RecursiveASTVisitor::TraverseLambdaExpr(lambda); });
    }
    bool VisitReturnStmt(clang::ReturnStmt* statement) {
        check(result, statement->getRetValue());
        return true;
    }
    bool VisitTemplateSpecializationTypeLoc(clang::TemplateSpecializationTypeLoc type) {
        if (isUniform(type.getType()) && type.getType()->isPointerType())
            reportError(context.getDiagnostics(), type.getBeginLoc(),
                        "a pointer cannot be uniform; the value to which it points can");
        return true;
    }

  private:
    clang::ASTContext& context;
    clang::QualType result; // of the function around

    template <class F> bool inside(clang::QualType type, F traverse) {
        const clang::QualType outer = std::exchange(result, type);
        const bool goesOn = traverse();
        result = outer;
        return goesOn;
    }

    // A value that becomes one of the type.
    void check(clang::QualType type, const clang::Expr* value) {
        if (!value || type.isNull() || value->isInstantiationDependent() ||
            type->isReferenceType() || !isUniform(type))
            return;
        if (const clang::Expr* cause = causeOfDifference(*value))
            reportError(context.getDiagnostics(), cause->getBeginLoc(),
                        "%0 may differ between threads; a uniform value requires constants and "
                        "uniform values",
                        nameOf(*cause));
    }

    static std::string nameOf(const clang::Expr& cause) {
        const clang::ValueDecl* named = nullptr;
        if (const auto* variable = llvm::dyn_cast<clang::DeclRefExpr>(&cause))
            named = variable->getDecl();
        else if (const auto* member = llvm::dyn_cast<clang::MemberExpr>(&cause))
            named = member->getMemberDecl();
        return "'" + (named ? named->getNameAsString() : "this") + "'";
    }

    // The variable in an expression, the member of `this` or `this` itself that may differ between
    // threads; null if no part may.
    const clang::Expr* causeOfDifference(const clang::Expr& whole) const {
        const clang::Expr& value = *whole.IgnoreParenImpCasts();
        const auto* call = llvm::dyn_cast<clang::CallExpr>(&value);
        if (isUniform(value.getType()) || (call && makesUniform(*call)))
            return nullptr;
        if (llvm::isa<clang::CXXThisExpr>(value))
            return &value;
        if (const auto* named = llvm::dyn_cast<clang::DeclRefExpr>(&value)) {
            const auto* variable = llvm::dyn_cast<clang::VarDecl>(named->getDecl());
            const bool isOfProgram = !variable || !(variable->hasLocalStorage() ||
                                                    variable->hasAttr<clang::SectionAttr>());
            const bool isEqual = isOfProgram || (!llvm::isa<clang::ParmVarDecl>(variable) &&
                                                 variable->isUsableInConstantExpressions(context));
            return isEqual ? nullptr : &value;
        }
        if (llvm::isa<clang::UnaryExprOrTypeTraitExpr>(value))
            return nullptr;
        for (const clang::Stmt* part : value.children())
            if (const auto* inner = llvm::dyn_cast_if_present<clang::Expr>(part))
                if (const clang::Expr* cause = causeOfDifference(*inner))
                    return llvm::isa<clang::CXXThisExpr>(cause) &&
                                   llvm::isa<clang::MemberExpr>(value)
                               ? &value
                               : cause;
        return nullptr;
    }
};

} // namespace

void checkUniforms(clang::ASTContext& context, const std::vector<clang::Decl*>& program) {
    if (context.Idents.find(libraryName) == context.Idents.end())
        return; // the token pass wrote it nowhere
    UniformChecker checker(context);
    for (clang::Decl* declaration : program)
        checker.TraverseDecl(declaration);
}

} // namespace tarnwick::msl
