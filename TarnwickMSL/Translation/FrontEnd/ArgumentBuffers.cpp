#include "TarnwickMSL/Translation/FrontEnd/ArgumentBuffers.h"

#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/RecordLayout.h>
#include <clang/CodeGen/CodeGenABITypes.h>
#include <clang/CodeGen/ModuleBuilder.h>
#include <llvm/IR/Type.h>
#include <llvm/Support/raw_ostream.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tarnwick::msl {

using clang::QualType;

static const clang::CXXRecordDecl* recordOf(QualType type) {
    const auto* record = type->getAsCXXRecordDecl();
    return record && record->hasDefinition() ? record->getDefinition() : nullptr;
}

static bool isOfLibrary(const clang::CXXRecordDecl& record) {
    const auto* space = llvm::dyn_cast<clang::NamespaceDecl>(record.getDeclContext());
    return space && space->getName() == "metal";
}

static bool isSampler(const clang::CXXRecordDecl& record) {
    return isOfLibrary(record) && record.getName() == "sampler";
}

// A texture's class, to read its shape from.
static const clang::ClassTemplateSpecializationDecl* textureOf(const clang::CXXRecordDecl& record) {
    const llvm::StringRef name = record.getName();
    bool isTexture =
        isOfLibrary(record) && (name.starts_with("texture") || name.starts_with("depth"));
    return isTexture ? llvm::dyn_cast<clang::ClassTemplateSpecializationDecl>(&record) : nullptr;
}

static bool holdsResources(QualType type) {
    const auto* record = recordOf(type->getBaseElementTypeUnsafe()->getCanonicalTypeInternal());
    if (!record)
        return false;
    return isSampler(*record) || textureOf(*record) ||
           std::any_of(record->field_begin(), record->field_end(),
                       [](const clang::FieldDecl* f) { return holdsResources(f->getType()); });
}

bool isArgumentBuffer(QualType type) {
    const auto* record = recordOf(type->getBaseElementTypeUnsafe()->getCanonicalTypeInternal());
    bool hasIds = record && std::any_of(record->field_begin(), record->field_end(),
                                        [](const clang::FieldDecl* field) {
                                            return metalAttribute(*field, "id").has_value();
                                        });
    return hasIds || holdsResources(type);
}

void readPointee(clang::ASTContext& context, QualType pointee, Argument& argument) {
    if (pointee->isIncompleteType())
        return;
    argument.elementBytes =
        static_cast<std::uint64_t>(context.getTypeSizeInChars(pointee).getQuantity());
    argument.elementAlign =
        static_cast<std::uint64_t>(context.getTypeAlignInChars(pointee).getQuantity());
}

bool readTexture(clang::ASTContext& context, const clang::ClassTemplateSpecializationDecl& texture,
                 Argument& argument) {
    static constexpr std::array<std::pair<std::string_view, TextureShape>, 9> shapes = {
        {{"1d", TextureShape::d1},
         {"1d_array", TextureShape::d1Array},
         {"2d", TextureShape::d2},
         {"2d_array", TextureShape::d2Array},
         {"2d_ms", TextureShape::d2Multisample},
         {"2d_ms_array", TextureShape::d2MultisampleArray},
         {"3d", TextureShape::d3},
         {"cube", TextureShape::cube},
         {"cube_array", TextureShape::cubeArray}}};
    llvm::StringRef name = texture.getName();
    argument.isDepth = name.consume_front("depth");
    if (!argument.isDepth && !name.consume_front("texture"))
        return false;
    for (const auto& [text, known] : shapes)
        if (std::string_view(name) == text)
            argument.shape = known;
    if (name == "_buffer")
        argument.shape = TextureShape::buffer;
    if (argument.shape == TextureShape::none)
        return false;
    argument.kind = ArgumentKind::texture;
    const QualType component = texture.getTemplateArgs()[0].getAsType();
    argument.component = component->isFloatingType()            ? TextureComponent::float_
                         : context.getTypeSize(component) == 64 ? TextureComponent::ulong_
                         : component->isSignedIntegerType()     ? TextureComponent::int_
                                                                : TextureComponent::uint_;
    // enum class access { sample, read, write, read_write }
    const std::int64_t access = texture.getTemplateArgs()[1].getAsIntegral().getExtValue();
    argument.isRead = access != 2;
    argument.isWritten = access >= 2;
    if (texture.getTemplateArgs().size() > 2) {
        const auto* coherence = texture.getTemplateArgs()[2].getAsType()->getAsCXXRecordDecl();
        argument.isCoherent = coherence && coherence->getName() == "memory_coherence_device";
    }
    return true;
}

namespace {

class MemberReader {
  public:
    explicit MemberReader(clang::ASTContext& context) : context(context) {}

    void read(QualType type, std::uint64_t offset);
    std::vector<Argument> members;
    std::vector<QualType> pointees; // of each member; null for those that are no pointers
    std::uint32_t id = 0;           // of the next member

  private:
    clang::ASTContext& context;

    void add(Argument member, std::uint64_t offset, QualType pointee) {
        pointees.push_back(pointee);
        member.offset = static_cast<std::uint32_t>(offset);
        member.id = id++;
        members.push_back(std::move(member));
    }
    void readRecord(const clang::CXXRecordDecl& record, std::uint64_t offset);
    std::uint64_t bytesOf(QualType type) const {
        return static_cast<std::uint64_t>(context.getTypeSizeInChars(type).getQuantity());
    }
};

// The ids of a nested record count from that of the member.
void MemberReader::readRecord(const clang::CXXRecordDecl& record, std::uint64_t offset) {
    const clang::ASTRecordLayout& layout = context.getASTRecordLayout(&record);
    const std::uint32_t first = id;
    for (const clang::CXXBaseSpecifier& base : record.bases())
        if (const auto* inherited = recordOf(base.getType()))
            readRecord(*inherited,
                       offset + static_cast<std::uint64_t>(
                                    layout.getBaseClassOffset(inherited).getQuantity()));
    for (const clang::FieldDecl* field : record.fields()) {
        if (const auto given = metalAttribute(*field, "id"); given && given->hasIndex)
            id = first + given->index;
        read(field->getType(), offset + layout.getFieldOffset(field->getFieldIndex()) /
                                            static_cast<std::uint64_t>(context.getCharWidth()));
    }
}

void MemberReader::read(QualType type, std::uint64_t offset) {
    if (members.size() > mostMembers)
        return;
    Argument member;
    QualType pointee;
    if (const auto* array = context.getAsConstantArrayType(type)) {
        for (std::uint64_t n = 0; n < array->getZExtSize() && members.size() <= mostMembers; ++n)
            read(array->getElementType(), offset + n * bytesOf(array->getElementType()));
        return;
    }
    const auto* record = recordOf(type);
    const auto* texture = record ? textureOf(*record) : nullptr;
    if (record && isSampler(*record)) {
        member.kind = ArgumentKind::sampler;
    } else if (texture && readTexture(context, *texture, member)) {
        member.kind = ArgumentKind::texture;
    } else if (type->isPointerType() || type->isReferenceType()) {
        member.kind = ArgumentKind::buffer;
        member.space = AddressSpace::device;
        pointee = type->getPointeeType();
        readPointee(context, pointee, member);
    } else if (record && (!isOfLibrary(*record) || record->getName() == "array")) {
        return readRecord(*record, offset);
    } else {
        member.kind = ArgumentKind::builtIn;
        member.elementBytes = bytesOf(type);
    }
    add(std::move(member), offset, pointee);
}

} // namespace

std::vector<Argument> argumentMembers(clang::ASTContext& context, QualType type) {
    MemberReader reader(context);
    reader.read(type, 0);
    return std::move(reader.members);
}

std::string memoryText(QualType type, clang::CodeGenerator& generator) {
    std::string text;
    if (type->isIncompleteType())
        return text;
    llvm::raw_string_ostream out(text);
    clang::CodeGen::convertTypeForMemory(generator.CGM(), type)->print(out, false, true);
    return text;
}

void completeMembers(clang::ASTContext& context, QualType type, std::vector<Argument>& members,
                     clang::CodeGenerator& generator) {
    MemberReader reader(context);
    reader.read(type, 0);
    for (std::size_t n = 0; n < members.size(); ++n)
        if (!reader.pointees[n].isNull())
            members[n].elementType = memoryText(reader.pointees[n], generator);
}

} // namespace tarnwick::msl
