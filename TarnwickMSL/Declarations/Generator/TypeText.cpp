#include "TarnwickMSL/Declarations/Generator/TypeText.h"

#include <clang/AST/Decl.h>
#include <clang/AST/DeclTemplate.h>
#include <clang/AST/PrettyPrinter.h>

#include <initializer_list>

namespace tarnwick::msl {
namespace {

std::string scalarName(const clang::BuiltinType& type) {
    using Kind = clang::BuiltinType;
    switch (type.getKind()) {
    case Kind::UChar:
        return "uchar";
    case Kind::UShort:
        return "ushort";
    case Kind::UInt:
        return "uint";
    case Kind::ULong:
        return "ulong";
    case Kind::Char_S:
    case Kind::Char_U:
    case Kind::SChar:
        return "char";
    case Kind::Bool:
        return "bool";
    case Kind::Float16:
    case Kind::Half:
        return "half";
    default:
        return type.getName(clang::PrintingPolicy(clang::LangOptions())).str();
    }
}

void remove(std::string& text, std::initializer_list<const char*> words) {
    for (const std::string word : words)
        for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word))
            text.erase(at, word.size());
}

// The type as the library writes it, for types that depend on template parameters.
std::string writtenText(clang::QualType type) {
    clang::LangOptions language;
    language.CPlusPlus = true;
    language.Bool = true;
    clang::PrintingPolicy policy(language);
    policy.SuppressTagKeyword = true;
    std::string text = type.getAsString(policy);
    remove(text, {"metal::", "typename ", "volatile "});
    return text;
}

std::string recordText(const clang::CXXRecordDecl& record) {
    const std::string name = record.getNameAsString();
    const auto* special = llvm::dyn_cast<clang::ClassTemplateSpecializationDecl>(&record);
    if (special == nullptr)
        return name;
    std::string types, numbers;
    for (const clang::TemplateArgument& argument : special->getTemplateArgs().asArray())
        if (argument.getKind() == clang::TemplateArgument::Type &&
            !argument.getAsType()->isVoidType())
            types += (types.empty() ? "" : ", ") + typeText(argument.getAsType()).text;
        else if (argument.getKind() == clang::TemplateArgument::Integral &&
                 !argument.getIntegralType()->isEnumeralType())
            numbers += (numbers.empty() ? "" : "x") +
                       std::to_string(argument.getAsIntegral().getExtValue());
    if (name == "matrix")
        return types + numbers;
    if (name.ends_with("_vector")) // bool_vector<3>, packed_vector<float, 3>
        return name == "packed_vector" ? "packed_" + types + numbers
                                       : name.substr(0, name.size() - 7) + numbers;
    return name + "<" + types + (types.empty() || numbers.empty() ? "" : ", ") + numbers + ">";
}

} // namespace

TypeText typeText(clang::QualType type) {
    if (const auto* reference = type->getAs<clang::ReferenceType>()) {
        TypeText found = typeText(reference->getPointeeType());
        const bool isConstant = reference->getPointeeType().isConstQualified();
        found.suffix = isConstant ? "" : "&";
        found.text += found.suffix;
        return found;
    }
    if (const auto* pointer = type->getAs<clang::PointerType>()) {
        TypeText found = typeText(pointer->getPointeeType());
        found.suffix = "*";
        found.text += found.suffix;
        return found;
    }
    if (type->isDependentType())
        return {.text = writtenText(type.getUnqualifiedType())};
    const clang::QualType canonical = type.getCanonicalType();
    if (const auto* vector = canonical->getAs<clang::ExtVectorType>()) {
        const TypeText element = typeText(vector->getElementType());
        return {element.text + std::to_string(vector->getNumElements()), element.text,
                vector->getNumElements(), ""};
    }
    if (const auto* scalar = canonical->getAs<clang::BuiltinType>()) {
        const std::string name = scalarName(*scalar);
        return {name, scalar->isVoidType() ? "" : name, scalar->isVoidType() ? 0U : 1U, ""};
    }
    if (const clang::CXXRecordDecl* record = canonical->getAsCXXRecordDecl()) {
        const std::string text = recordText(*record);
        const bool isBool = text.size() == 5 && text.starts_with("bool");
        return {text, isBool ? "bool" : "", isBool ? static_cast<unsigned>(text[4] - '0') : 0U, ""};
    }
    return {.text = writtenText(canonical.getUnqualifiedType())};
}

} // namespace tarnwick::msl
