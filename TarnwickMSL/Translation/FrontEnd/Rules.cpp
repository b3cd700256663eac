#include "TarnwickMSL/Translation/FrontEnd/Rules.h"

#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"
#include "TarnwickMSL/Translation/FrontEnd/Messages.h"

#include <clang/AST/RecursiveASTVisitor.h>
#include <clang/Basic/SourceManager.h>
#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/DenseSet.h>
#include <llvm/ADT/MapVector.h>
#include <llvm/ADT/Sequence.h>

namespace tarnwick::msl {
namespace {

using clang::DiagnosticsEngine;

struct Call {
    const clang::FunctionDecl* callee;
    clang::SourceLocation at;
};

class RuleChecker : public clang::RecursiveASTVisitor<RuleChecker> {
  public:
    explicit RuleChecker(clang::ASTContext& context) : context(context) {}

    bool shouldVisitTemplateInstantiations() const { return true; }
    bool shouldVisitImplicitCode() const { return false; }

    bool TraverseFunctionDecl(clang::FunctionDecl* function) {
        return inside(function,
                      [&] { return RecursiveASTVisitor::TraverseFunctionDecl(function); });
    }
    bool TraverseCXXMethodDecl(clang::CXXMethodDecl* method) {
        return inside(method, [&] { return RecursiveASTVisitor::TraverseCXXMethodDecl(method); });
    }
    bool TraverseCXXConstructorDecl(clang::CXXConstructorDecl* method) {
        return inside(method,
                      [&] { return RecursiveASTVisitor::TraverseCXXConstructorDecl(method); });
    }

    bool VisitCallExpr(clang::CallExpr* call);
    bool VisitCXXConstructExpr(clang::CXXConstructExpr* made) {
        note(made->getConstructor(), made->getBeginLoc());
        return true;
    }
    bool VisitVarDecl(clang::VarDecl* variable);
    bool VisitFieldDecl(clang::FieldDecl* field) {
        checkType(field->getType(), field->getLocation());
        checkBits(*field);
        return true;
    }
    void reportRecursion();

  private:
    clang::ASTContext& context;
    const clang::FunctionDecl* current = nullptr;
    llvm::MapVector<const clang::FunctionDecl*, std::vector<Call>> calls;

    template <class F> bool inside(clang::FunctionDecl* function, F traverse) {
        const clang::FunctionDecl* outer = std::exchange(current, function->getCanonicalDecl());
        const bool goesOn = traverse();
        current = outer;
        return goesOn;
    }
    void report(clang::SourceLocation at, const char* message, llvm::StringRef name = "") {
        reportError(context.getDiagnostics(), at, message, name);
    }
    void note(const clang::FunctionDecl* callee, clang::SourceLocation at) {
        if (current && callee)
            calls[current].push_back({callee->getCanonicalDecl(), at});
    }
    void checkSize(const clang::VarDecl& variable);
    void checkBits(const clang::FieldDecl& field);
    void checkType(clang::QualType type, clang::SourceLocation at) {
        if (type->isMemberPointerType())
            report(at, "pointers to members are not supported in Metal");
    }
    bool isUsers(clang::SourceLocation at) const {
        const clang::SourceManager& sources = context.getSourceManager();
        return at.isValid() &&
               !isLibraryFile(std::string_view(sources.getFilename(sources.getExpansionLoc(at))));
    }
};

bool RuleChecker::VisitCallExpr(clang::CallExpr* call) {
    if (const clang::FunctionDecl* callee = call->getDirectCallee())
        note(callee, call->getBeginLoc());
    return true;
}

// More than the registers and the spill memory of a thread. Drivers crash on arrays of megabytes.
static constexpr std::uint64_t localBytes = 262144;

void RuleChecker::checkSize(const clang::VarDecl& variable) {
    const clang::QualType type = variable.getType();
    if (type->isDependentType() || type->isIncompleteType() || type->isReferenceType())
        return;
    const std::uint64_t bytes = context.getTypeSizeInChars(type).getQuantity();
    if (bytes > localBytes)
        report(variable.getLocation(), "variable takes %0 bytes; the maximum is 262144",
               std::to_string(bytes));
}

// C++ allows bits beside those of the value, which only padding needs.
void RuleChecker::checkBits(const clang::FieldDecl& field) {
    if (!field.isBitField() || field.getBitWidth()->isValueDependent() ||
        field.getType()->isDependentType())
        return;
    const std::uint64_t bits = field.getBitWidthValue(context);
    const std::uint64_t most = context.getTypeSize(field.getType());
    if (bits > most)
        report(field.getLocation(), "bit-field takes %0",
               std::to_string(bits) + " bits; its type has " + std::to_string(most));
}

static bool isInitialised(const clang::VarDecl& variable) {
    const clang::Expr* value = variable.getInit();
    const auto* made = llvm::dyn_cast_if_present<clang::CXXConstructExpr>(value);
    return value && !(made && made->getConstructor()->isTrivial());
}

// Whether each component of a value is zero.
static bool isZero(const clang::APValue& value) {
    if (value.isInt())
        return value.getInt() == 0;
    if (value.isFloat())
        return value.getFloat().isPosZero();
    auto areZero = [](unsigned count, auto&& part) {
        return llvm::all_of(llvm::seq(count), [&](unsigned i) { return isZero(part(i)); });
    };
    if (value.isVector())
        return areZero(value.getVectorLength(), [&](unsigned i) { return value.getVectorElt(i); });
    if (value.isArray())
        return areZero(value.getArrayInitializedElts(),
                       [&](unsigned i) { return value.getArrayInitializedElt(i); }) &&
               (!value.hasArrayFiller() || isZero(value.getArrayFiller()));
    if (value.isStruct())
        return areZero(value.getStructNumBases(),
                       [&](unsigned i) { return value.getStructBase(i); }) &&
               areZero(value.getStructNumFields(),
                       [&](unsigned i) { return value.getStructField(i); });
    return value.isUnion() && isZero(value.getUnionValue());
}

static bool isZeroed(const clang::VarDecl& variable) {
    const clang::APValue* value = variable.evaluateValue();
    return value && isZero(*value);
}

bool RuleChecker::VisitVarDecl(clang::VarDecl* variable) {
    if (variable->hasLocalStorage())
        checkSize(*variable);
    if (variable->hasAttr<clang::SectionAttr>() && isInitialised(*variable) && !isZeroed(*variable))
        report(variable->getLocation(),
               "the initial value of threadgroup variable '%0' is not zero", variable->getName());
    checkType(variable->getType(), variable->getLocation());
    const bool isConstant = variable->isConstexpr() || variable->getType().isConstQualified() ||
                            context.getBaseElementType(variable->getType()).isConstQualified();
    if (isConstant || variable->hasAttr<clang::SectionAttr>() ||
        llvm::isa<clang::ParmVarDecl>(variable))
        return true;
    if (variable->isStaticLocal())
        report(variable->getLocation(),
               "static local variable '%0' must be declared in the constant address space",
               variable->getName());
    else if (variable->isFileVarDecl() && !variable->isStaticDataMember())
        report(variable->getLocation(),
               "program scope variable '%0' must reside in constant address space",
               variable->getName());
    return true;
}

// Depth-first search over the calls; a call of a function on the current path closes a cycle.
void RuleChecker::reportRecursion() {
    llvm::DenseSet<const clang::FunctionDecl*> open, done;
    auto visit = [&](auto&& self, const clang::FunctionDecl* function) -> void {
        open.insert(function);
        if (auto found = calls.find(function); found != calls.end())
            for (const Call& call : std::vector(found->second)) {
                if (open.contains(call.callee) && isUsers(call.at))
                    report(call.at, "recursive function call to '%0' is not supported in Metal",
                           call.callee->getNameAsString());
                else if (!open.contains(call.callee) && !done.contains(call.callee))
                    self(self, call.callee);
            }
        open.erase(function);
        done.insert(function);
    };
    for (const auto& [function, made] : calls)
        if (!done.contains(function))
            visit(visit, function);
}

} // namespace

void checkRules(clang::ASTContext& context, const std::vector<clang::Decl*>& program) {
    RuleChecker checker(context);
    for (clang::Decl* declaration : program)
        checker.TraverseDecl(declaration);
    checker.reportRecursion();
}

} // namespace tarnwick::msl
