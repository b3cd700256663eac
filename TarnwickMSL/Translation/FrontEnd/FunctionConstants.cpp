#include "TarnwickMSL/Translation/FrontEnd/FunctionConstants.h"

#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"
#include "TarnwickMSL/Translation/FrontEnd/Declarations.h"
#include "TarnwickMSL/Translation/FrontEnd/Messages.h"
#include "TarnwickMSL/Translation/FrontEnd/StageRecords.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/GlobalDecl.h>
#include <clang/Basic/Diagnostic.h>
#include <clang/CodeGen/ModuleBuilder.h>
#include <llvm/IR/GlobalValue.h>

#include <map>

namespace tarnwick::msl {
namespace {

using clang::QualType;

class ConstantReader {
  public:
    explicit ConstantReader(clang::ASTContext& context) : context(context) {}

    void readVariable(const clang::VarDecl& variable);
    std::vector<OpenConstant> constants;

  private:
    clang::ASTContext& context;
    std::map<std::uint32_t, const clang::VarDecl*> byIndex;

    void error(clang::SourceLocation at, const char* message, llvm::StringRef first = "",
               llvm::StringRef second = "") {
        reportError(context.getDiagnostics(), at, message, first, second);
    }
    bool readType(QualType type, ConstantSignature& constant) const;
};

bool ConstantReader::readType(QualType type, ConstantSignature& constant) const {
    if (const auto* enumeration = type->getAs<clang::EnumType>())
        type = enumeration->getDecl()->getIntegerType();
    const auto* vector = type->getAs<clang::VectorType>();
    const QualType component = vector ? vector->getElementType() : type;
    if (component->isIntegerType() && !component->isBooleanType() &&
        context.getTypeSize(component) == 64) {
        constant.scalar = component->isSignedIntegerType() ? Scalar::int64 : Scalar::uint64;
        constant.width = vector ? vector->getNumElements() : 1;
        return true;
    }
    StageValue shape;
    if (type->isArrayType() || !readShape(context, type, shape))
        return false;
    constant.scalar = shape.scalar;
    constant.width = shape.width;
    return true;
}

void ConstantReader::readVariable(const clang::VarDecl& variable) {
    const auto attribute = metalAttribute(variable, "function_constant");
    if (!attribute || variable.isInvalidDecl())
        return;
    ConstantSignature constant{.name = variable.getName().str(), .symbol = {}};
    constant.index = attribute->index;
    if (!attribute->hasIndex)
        error(variable.getLocation(), "the function constant '%0' requires an index",
              constant.name);
    if (!variable.getType().isConstQualified() || !variable.isFileVarDecl() ||
        variable.isStaticDataMember())
        error(variable.getLocation(),
              "the function constant '%0' must be in the constant address space at program scope",
              constant.name);
    if (!readType(variable.getType(), constant))
        error(variable.getLocation(), "type %0 is not valid for a function constant",
              "'" + variable.getType().getUnqualifiedType().getAsString() + "'");
    const auto [known, isNew] = byIndex.try_emplace(constant.index, &variable);
    if (!isNew && known->second->getCanonicalDecl() != variable.getCanonicalDecl())
        error(variable.getLocation(), "'%0' and '%1' have the same index", constant.name,
              known->second->getName());
    if (isNew && !variable.hasInit())
        constants.push_back({&variable, std::move(constant)});
}

} // namespace

std::vector<OpenConstant> readConstants(clang::ASTContext& context,
                                        const std::vector<clang::Decl*>& program) {
    ConstantReader reader(context);
    eachDeclaration<clang::VarDecl>(
        program, [&](const clang::VarDecl& variable) { reader.readVariable(variable); });
    return std::move(reader.constants);
}

void completeConstants(std::vector<OpenConstant>& constants, clang::CodeGenerator& generator) {
    for (OpenConstant& constant : constants)
        constant.signature.symbol = symbolOf(*constant.variable, generator);
}

} // namespace tarnwick::msl
