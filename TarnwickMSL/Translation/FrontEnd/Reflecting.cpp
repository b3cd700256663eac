#include "TarnwickMSL/Translation/FrontEnd/Reflecting.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/DeclTemplate.h>
#include <clang/AST/RecordLayout.h>
#include <llvm/ADT/DenseMap.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace tarnwick::msl {
namespace {

using clang::QualType;

bool isOfLibrary(const clang::RecordDecl& record) {
    const auto* space = llvm::dyn_cast<clang::NamespaceDecl>(record.getDeclContext());
    return space && space->getName() == "metal";
}

// The template of the library that the type is made of: metal::matrix, metal::array.
const clang::ClassTemplateSpecializationDecl* madeOf(QualType type, llvm::StringRef name) {
    const auto* made = llvm::dyn_cast_if_present<clang::ClassTemplateSpecializationDecl>(
        type->getAsCXXRecordDecl());
    return made && isOfLibrary(*made) && made->getName() == name ? made : nullptr;
}

std::uint32_t bytes(clang::CharUnits size) {
    return static_cast<std::uint32_t>(size.getQuantity());
}

// An array, of the language or of the library, as its element and the number of elements.
struct Elements {
    QualType type;
    std::uint32_t count = 0; // 0: not an array
};
Elements elementsOf(const clang::ASTContext& context, QualType type) {
    Elements found{.type = type};
    for (;;) {
        std::uint64_t length = 0;
        if (const auto* array = context.getAsConstantArrayType(found.type)) {
            length = array->getSize().getZExtValue();
            found.type = array->getElementType();
        } else if (const auto* made = madeOf(found.type, "array")) {
            length = made->getTemplateArgs()[1].getAsIntegral().getZExtValue();
            found.type = made->getTemplateArgs()[0].getAsType();
        } else {
            return found;
        }
        found.count = std::max(found.count, 1u) * static_cast<std::uint32_t>(length);
    }
}

Access accessOf(const Argument& argument, QualType type) {
    switch (argument.kind) {
    case ArgumentKind::buffer:
        return argument.space == AddressSpace::constant || type->getPointeeType().isConstQualified()
                   ? Access::read
                   : Access::readWrite;
    case ArgumentKind::texture:
        if (const auto* made = llvm::dyn_cast_if_present<clang::ClassTemplateSpecializationDecl>(
                type->getAsCXXRecordDecl())) {
            // enum class access { sample, read, write, read_write }
            static constexpr Access names[] = {Access::sample, Access::read, Access::write,
                                               Access::readWrite};
            const auto name = made->getTemplateArgs()[1].getAsIntegral().getZExtValue();
            return name < std::size(names) ? names[name] : Access::none;
        }
        return Access::none;
    case ArgumentKind::threadgroup:
        return Access::readWrite;
    case ArgumentKind::sampler:
    case ArgumentKind::accelerationStructure:
    case ArgumentKind::stageIn:
    case ArgumentKind::builtIn:
    case ArgumentKind::payload:
    case ArgumentKind::meshGrid:
    case ArgumentKind::mesh:
        break;
    }
    return Access::none;
}

std::optional<ArgumentTable> tableOf(ArgumentKind kind) {
    switch (kind) {
    case ArgumentKind::buffer:
        return ArgumentTable::buffer;
    case ArgumentKind::texture:
        return ArgumentTable::texture;
    case ArgumentKind::sampler:
        return ArgumentTable::sampler;
    case ArgumentKind::threadgroup:
        return ArgumentTable::threadgroup;
    case ArgumentKind::accelerationStructure:
        return ArgumentTable::accelerationStructure;
    case ArgumentKind::stageIn:
    case ArgumentKind::builtIn:
    case ArgumentKind::payload:
    case ArgumentKind::meshGrid:
    case ArgumentKind::mesh:
        break;
    }
    return std::nullopt;
}

class Reflector {
  public:
    explicit Reflector(const clang::ASTContext& context) : context(context) {}

    void add(const Entry& entry) {
        ReflectedEntry made{.name = entry.signature.name, .arguments = {}};
        for (std::size_t i = 0; i < entry.signature.arguments.size(); ++i) {
            const Argument& argument = entry.signature.arguments[i];
            const auto table = tableOf(argument.kind);
            if (!table || argument.presence == Presence::no)
                continue;
            const QualType type = entry.function->getParamDecl(static_cast<unsigned>(i))->getType();
            const bool isMemory = type->isPointerType() || type->isReferenceType();
            const QualType element =
                isMemory ? type->getPointeeType() : elementsOf(context, type).type;
            made.arguments.push_back({.name = argument.name,
                                      .table = *table,
                                      .index = argument.index,
                                      .count = argument.count,
                                      .type = isMemory ? typeOf(element) : handleOf(element),
                                      .access = accessOf(argument, isMemory ? type : element),
                                      .isConstant = argument.kind == ArgumentKind::buffer &&
                                                    argument.space == AddressSpace::constant,
                                      .isReference = argument.isReference});
        }
        reflection.entries.push_back(std::move(made));
    }

    Reflection reflection;

  private:
    const clang::ASTContext& context;
    llvm::DenseMap<const clang::CXXRecordDecl*, std::uint32_t> known;

    std::string nameOf(QualType type) const {
        clang::PrintingPolicy policy(context.getLangOpts());
        policy.SuppressTagKeyword = true;
        policy.SuppressUnwrittenScope = true;
        const std::string text = type.getUnqualifiedType().getAsString(policy);
        constexpr std::string_view library = "metal::";
        return text.starts_with(library) ? text.substr(library.size()) : text;
    }

    // Of a texture or a sampler, whose memory only argument buffers have.
    ReflectedType handleOf(QualType type) const { return {.name = nameOf(type)}; }

    ReflectedType typeOf(QualType type) {
        ReflectedType made{.name = nameOf(type)};
        if (type->isIncompleteType())
            return made;
        made.bytes = bytes(context.getTypeSizeInChars(type));
        made.alignment = bytes(context.getTypeAlignInChars(type));
        if (const auto* matrix = madeOf(type, "matrix"))
            made.columns = static_cast<std::uint32_t>(
                matrix->getTemplateArgs()[1].getAsIntegral().getZExtValue());
        const QualType element = elementsOf(context, type).type;
        const auto* record = element->getAsCXXRecordDecl();
        if (record && record->hasDefinition() && !isOfLibrary(*record))
            made.record = recordOf(*record->getDefinition());
        return made;
    }

    std::uint32_t recordOf(const clang::CXXRecordDecl& record) {
        const auto [place, isNew] =
            known.try_emplace(&record, static_cast<std::uint32_t>(reflection.records.size()));
        const std::uint32_t index = place->second;
        if (!isNew)
            return index;
        reflection.records.emplace_back(); // a member may point to the record itself
        const clang::ASTRecordLayout& layout = context.getASTRecordLayout(&record);
        Record made{.name = nameOf(context.getRecordType(&record)),
                    .bytes = bytes(layout.getSize()),
                    .alignment = bytes(layout.getAlignment()),
                    .members = {}};
        addMembers(record, 0, made.members);
        std::ranges::stable_sort(made.members, {}, &RecordMember::offset);
        reflection.records[index] = std::move(made);
        return index;
    }

    void addMembers(const clang::CXXRecordDecl& record, std::uint32_t from,
                    std::vector<RecordMember>& members) {
        const clang::ASTRecordLayout& layout = context.getASTRecordLayout(&record);
        for (const clang::CXXBaseSpecifier& base : record.bases())
            if (const auto* below = base.getType()->getAsCXXRecordDecl())
                addMembers(*below, from + bytes(layout.getBaseClassOffset(below)), members);
        for (const clang::FieldDecl* field : record.fields()) {
            const auto bits = layout.getFieldOffset(field->getFieldIndex());
            members.push_back(memberOf(*field, from + bytes(context.toCharUnitsFromBits(
                                                          static_cast<std::int64_t>(bits)))));
        }
    }

    RecordMember memberOf(const clang::FieldDecl& field, std::uint32_t offset) {
        auto [type, count] = elementsOf(context, field.getType());
        RecordMember made{.name = field.getName().str(),
                          .type = {},
                          .offset = offset,
                          .count = count,
                          .stride = count ? bytes(context.getTypeSizeInChars(type)) : 0,
                          .isPointer = type->isPointerType() || type->isReferenceType()};
        made.type = typeOf(made.isPointer ? type->getPointeeType() : type);
        return made;
    }
};

} // namespace

Reflection reflect(const clang::ASTContext& context, const std::vector<Entry>& entries) {
    Reflector reflector(context);
    for (const Entry& entry : entries)
        reflector.add(entry);
    return std::move(reflector.reflection);
}

} // namespace tarnwick::msl
