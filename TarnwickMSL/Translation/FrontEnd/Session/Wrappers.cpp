#include "TarnwickMSL/Translation/FrontEnd/Session/Wrappers.h"

#include <clang/AST/Attr.h>
#include <clang/AST/Decl.h>
#include <clang/AST/Expr.h>
#include <clang/AST/Stmt.h>
#include <clang/Basic/Builtins.h>

#include <utility>

namespace tarnwick::msl {
namespace {

bool isElementwise(unsigned builtIn) {
    switch (builtIn) {
    case clang::Builtin::BI__builtin_elementwise_abs:
    case clang::Builtin::BI__builtin_elementwise_ceil:
    case clang::Builtin::BI__builtin_elementwise_copysign:
    case clang::Builtin::BI__builtin_elementwise_cos:
    case clang::Builtin::BI__builtin_elementwise_floor:
    case clang::Builtin::BI__builtin_elementwise_log2:
    case clang::Builtin::BI__builtin_elementwise_max:
    case clang::Builtin::BI__builtin_elementwise_min:
    case clang::Builtin::BI__builtin_elementwise_roundeven:
    case clang::Builtin::BI__builtin_elementwise_sin:
    case clang::Builtin::BI__builtin_elementwise_sqrt:
    case clang::Builtin::BI__builtin_elementwise_trunc:
        return true;
    default:
        return false;
    }
}

// The expression of a body that only returns it.
const clang::Expr* returned(const clang::Stmt* body) {
    const auto* block = llvm::dyn_cast_if_present<clang::CompoundStmt>(body);
    const auto* end = block && block->size() == 1
                          ? llvm::dyn_cast<clang::ReturnStmt>(block->body_front())
                          : nullptr;
    return end ? end->getRetValue() : nullptr;
}

bool passesParameters(const clang::CallExpr& call, const clang::FunctionDecl& definition) {
    if (call.getNumArgs() != definition.getNumParams())
        return false;
    for (unsigned i = 0; i < call.getNumArgs(); ++i) {
        const auto* value = llvm::dyn_cast<clang::ImplicitCastExpr>(call.getArg(i));
        const auto* name =
            value && value->getCastKind() == clang::CK_LValueToRValue
                ? llvm::dyn_cast<clang::DeclRefExpr>(value->getSubExpr()->IgnoreParens())
                : nullptr;
        if (!name || name->getDecl() != definition.getParamDecl(i))
            return false;
    }
    return true;
}

} // namespace

unsigned wrappedBuiltIn(const clang::FunctionDecl& definition) {
    const auto* call = llvm::dyn_cast_if_present<clang::CallExpr>(returned(definition.getBody()));
    if (!call || call->hasStoredFPFeatures() || !isElementwise(call->getBuiltinCallee()) ||
        !passesParameters(*call, definition))
        return 0;
    return call->getBuiltinCallee();
}

DirectCalls::DirectCalls(clang::ASTContext& context, std::vector<Wrapper> given)
    : wrappers(std::move(given)) {
    for (const Wrapper& wrapper : wrappers)
        wrapper.function->addAttr(clang::BuiltinAttr::CreateImplicit(context, wrapper.builtIn));
}

DirectCalls::~DirectCalls() {
    for (const Wrapper& wrapper : wrappers)
        wrapper.function->dropAttr<clang::BuiltinAttr>();
}

} // namespace tarnwick::msl
