#include "TarnwickMSL/Translation/FrontEnd/StageRecords.h"

#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"
#include "TarnwickMSL/Translation/FrontEnd/BuiltIns.h"
#include "TarnwickMSL/Translation/FrontEnd/Messages.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/DeclTemplate.h>
#include <clang/AST/RecordLayout.h>
#include <clang/Basic/Diagnostic.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tarnwick::msl {
namespace {

using clang::QualType;

// The maximum between the stages: that of Metal's devices, below Vulkan's (1.3, 33.1: 128
// components).
constexpr std::size_t mostVaryings = 31;
// Of every device that has clip distances (Vulkan 1.3, table 53).
constexpr std::uint32_t mostClipDistances = 8;
constexpr std::uint32_t mostAttributes = 31;

constexpr std::array<std::pair<std::string_view, Interpolation>, 7> interpolations = {
    {{"flat", Interpolation::flat},
     {"center_perspective", Interpolation::centerPerspective},
     {"center_no_perspective", Interpolation::centerNoPerspective},
     {"centroid_perspective", Interpolation::centroidPerspective},
     {"centroid_no_perspective", Interpolation::centroidNoPerspective},
     {"sample_perspective", Interpolation::samplePerspective},
     {"sample_no_perspective", Interpolation::sampleNoPerspective}}};

std::optional<Scalar> scalarOf(QualType type) {
    const auto* builtIn = type.getCanonicalType()->getAs<clang::BuiltinType>();
    if (!builtIn)
        return std::nullopt;
    switch (builtIn->getKind()) {
    case clang::BuiltinType::Bool:
        return Scalar::bool_;
    case clang::BuiltinType::Char_S:
    case clang::BuiltinType::SChar:
        return Scalar::int8;
    case clang::BuiltinType::UChar:
        return Scalar::uint8;
    case clang::BuiltinType::Short:
        return Scalar::int16;
    case clang::BuiltinType::UShort:
        return Scalar::uint16;
    case clang::BuiltinType::Int:
        return Scalar::int32;
    case clang::BuiltinType::UInt:
        return Scalar::uint32;
    case clang::BuiltinType::Half:
        return Scalar::half;
    case clang::BuiltinType::Float:
        return Scalar::float_;
    default:
        return std::nullopt;
    }
}

// The class template of the library that the type is an instance of; null for other types.
const clang::ClassTemplateSpecializationDecl* libraryClass(QualType type) {
    const auto* made = llvm::dyn_cast_if_present<clang::ClassTemplateSpecializationDecl>(
        type->getAsCXXRecordDecl());
    const auto* space =
        made ? llvm::dyn_cast<clang::NamespaceDecl>(made->getDeclContext()) : nullptr;
    return space && space->getName() == "metal" ? made : nullptr;
}

class RecordReader {
  public:
    RecordReader(clang::ASTContext& context, const StagePlace& place)
        : context(context), place(place) {}

    void record(const clang::CXXRecordDecl& record, const StageValue& outer);
    std::vector<StageValue> values;

  private:
    clang::ASTContext& context;
    StagePlace place;

    bool isInput() const { return place.border == Border::input; }
    void error(clang::SourceLocation at, const char* message, llvm::StringRef first,
               llvm::StringRef second = "") {
        reportError(context.getDiagnostics(), at, message, first, second);
    }
    void field(const clang::FieldDecl& field, StageValue value);
    void attributes(const clang::FieldDecl& field, StageValue& value);
    bool attributeField(const clang::FieldDecl& field, StageValue value);
    bool controlPoints(const clang::FieldDecl& field, const StageValue& value);
    bool parts(QualType type, const StageValue& whole);
    bool interpolant(const clang::ClassTemplateSpecializationDecl& type, StageValue value);
    bool elements(QualType element, std::uint64_t count, const StageValue& whole);
    void reportTwin(const clang::FieldDecl& field, std::size_t i);
    void check(const clang::FieldDecl& field, const StageValue& value);
};

void RecordReader::attributes(const clang::FieldDecl& field, StageValue& value) {
    if (const Presence presence = presenceOf(field); presence != Presence::yes)
        value.presence = presence;
    for (const MetalAttribute& attribute : metalAttributes(field)) {
        value.interpolation = interpolationNamed(attribute.word).value_or(value.interpolation);
        if (attribute.word == "user")
            value.name = attribute.text;
        const bool isAttribute = attribute.word == "attribute" && place.hasAttributes();
        if (isAttribute || builtInWord(attribute.word)) {
            value.attribute = attribute.word;
            if (attribute.hasIndex)
                value.index = attribute.index;
        }
        if (attribute.word == "index" && attribute.hasIndex)
            value.source = attribute.index;
    }
}

// Reports an attribute that is invalid for the stage, the direction or the type.
void RecordReader::check(const clang::FieldDecl& field, const StageValue& value) {
    const BuiltInWord* word = builtInWord(value.attribute);
    if (!word)
        return;
    const bool isValid = isInput()                    ? word->isInputOf(place.stage, place.patch)
                         : place.stage == Stage::mesh ? word->isResultOfMesh(place.isOfPrimitive)
                                                      : word->isResultOf(place.stage);
    if (!isValid)
        error(field.getLocation(),
              isInput() ? "attribute '%0' is not valid for an input of a %1 function"
                        : "attribute '%0' is not valid for a result of a %1 function",
              value.attribute, stageName(place.stage));
    else if (value.attribute == "color" && value.index >= mostColors)
        error(field.getLocation(), "'%0' has an index beyond %1", field.getName(),
              std::to_string(mostColors - 1));
    else if (value.source > 1 || (value.source == 1 && value.index != 0))
        error(field.getLocation(), "attribute 'index' of '%0' is 0, or 1 for color(0)",
              field.getName());
    else if (value.attribute == "clip_distance" && value.index > mostClipDistances)
        error(field.getLocation(), "'%0' has more than %1 clip distances", field.getName(),
              std::to_string(mostClipDistances));
    else if (!word->takes(value))
        error(field.getLocation(), "type %0 is not valid for attribute '%1'",
              "'" + field.getType().getAsString() + "'", value.attribute);
}

// Appends the values of elements that follow each other in memory, named by index.
bool RecordReader::elements(QualType element, std::uint64_t count, const StageValue& whole) {
    const auto bytes =
        static_cast<std::uint64_t>(context.getTypeSizeInChars(element).getQuantity());
    for (std::uint64_t i = 0; i < std::min<std::uint64_t>(count, mostVaryings + 1); ++i) {
        StageValue value = whole;
        value.name += "[" + std::to_string(i) + "]";
        value.offset += i * bytes;
        if (!parts(element, value))
            return false;
    }
    return true;
}

// Appends the value of an interpolant<T, interpolation>.
bool RecordReader::interpolant(const clang::ClassTemplateSpecializationDecl& type,
                               StageValue value) {
    if (place.stage != Stage::fragment || !isInput())
        return false;
    const clang::TemplateArgumentList& arguments = type.getTemplateArgs();
    // enum class interpolation { perspective, no_perspective }
    value.interpolation = arguments[1].getAsIntegral().isZero()
                              ? Interpolation::centerPerspective
                              : Interpolation::centerNoPerspective;
    value.isInterpolant = true;
    values.push_back(value);
    StageValue& made = values.back();
    return readShape(context, arguments[0].getAsType(), made) &&
           (made.scalar == Scalar::float_ || made.scalar == Scalar::half);
}

// Appends the values of an array or a record, named by index and member. False if a part is neither
// a number nor a vector.
bool RecordReader::parts(QualType type, const StageValue& whole) {
    if (const auto* array = context.getAsConstantArrayType(type))
        return elements(array->getElementType(), array->getZExtSize(), whole);
    StageValue value = whole;
    if (readShape(context, type, value)) {
        const bool isInteger = value.scalar != Scalar::float_ && value.scalar != Scalar::half;
        if (isInteger)
            value.interpolation = Interpolation::flat;
        values.push_back(std::move(value));
        return true;
    }
    const auto* made = type->getAsCXXRecordDecl();
    if (!made || !made->isCompleteDefinition() || made->isUnion() || !whole.attribute.empty())
        return false;
    if (const auto* known = libraryClass(type)) {
        const clang::TemplateArgumentList& arguments = known->getTemplateArgs();
        if (known->getName() == "packed_vector")
            return elements(arguments[0].getAsType(), arguments[1].getAsIntegral().getZExtValue(),
                            whole);
        if (known->getName() == "interpolant")
            return interpolant(*known, whole);
        if (known->getName() != "matrix" && known->getName() != "array")
            return false;
    }
    record(*made, whole);
    return true;
}

// Whether nothing tells two values with the same attribute apart: the index, or the perspective of
// barycentric coordinates.
static bool isSameBuiltIn(const StageValue& a, const StageValue& b) {
    return a.index == b.index && (a.attribute != "barycentric_coord" ||
                                  isPerspective(a.interpolation) == isPerspective(b.interpolation));
}

// Reports a value with the attribute and index, or the name, of an earlier value.
void RecordReader::reportTwin(const clang::FieldDecl& field, std::size_t i) {
    const StageValue& value = values[i];
    for (std::size_t before = 0; before < i; ++before) {
        const StageValue& other = values[before];
        if (other.presence == Presence::no)
            continue;
        const bool isSame =
            value.attribute.empty() ? value.name == other.name : isSameBuiltIn(value, other);
        if (isSame && value.attribute == other.attribute && value.source == other.source)
            return error(field.getLocation(),
                         "'%0' has the attribute or the name of another member", field.getName());
    }
}

// The members of the T of a patch_control_point<T>. False if the member is of another type.
bool RecordReader::controlPoints(const clang::FieldDecl& field, const StageValue& value) {
    const auto* known = libraryClass(field.getType());
    if (!known || known->getName() != "patch_control_point")
        return false;
    const clang::CXXRecordDecl* point =
        known->getTemplateArgs()[0].getAsType()->getAsCXXRecordDecl();
    if (place.patch == PatchKind::none || value.isOfControlPoint)
        error(field.getLocation(), "'%0' is valid in a stage_in record of a patch function only",
              "patch_control_point");
    else if (!point)
        error(field.getLocation(), "invalid type %0 for a stage_in member",
              "'" + field.getType().getAsString() + "'");
    else {
        StageValue outer;
        outer.isOfControlPoint = true;
        record(*point, outer);
    }
    return true;
}

// A number or a vector that comes from a buffer.
bool RecordReader::attributeField(const clang::FieldDecl& field, StageValue value) {
    QualType type = field.getType();
    if (value.attribute != "attribute") {
        error(field.getLocation(),
              "'%0' is a stage_in member of a %1 function without attribute(n)", field.getName(),
              stageName(place.stage));
        return true;
    }
    if (const auto* known = libraryClass(type); known && known->getName() == "packed_vector") {
        value.width =
            static_cast<std::uint32_t>(known->getTemplateArgs()[1].getAsIntegral().getZExtValue());
        type = known->getTemplateArgs()[0].getAsType();
    }
    if (type->isArrayType() || !readShape(context, type, value) || value.scalar == Scalar::bool_)
        return false;
    values.push_back(value);
    if (value.index >= mostAttributes)
        error(field.getLocation(), "'%0' has an index beyond %1", field.getName(),
              std::to_string(mostAttributes - 1));
    reportTwin(field, values.size() - 1);
    return true;
}

void RecordReader::field(const clang::FieldDecl& field, StageValue value) {
    attributes(field, value);
    if (controlPoints(field, value))
        return;
    const std::size_t before = values.size();
    const bool isAttribute = place.hasAttributes() && !builtInWord(value.attribute);
    const bool isWhole =
        value.attribute == "clip_distance" && readShape(context, field.getType(), value);
    if (isWhole)
        values.push_back(value);
    else if (!(isAttribute ? attributeField(field, value) : parts(field.getType(), value))) {
        values.resize(before);
        error(field.getLocation(),
              isInput() ? "invalid type %0 for a stage_in member"
                        : "invalid type %0 for a returned member",
              "'" + field.getType().getAsString() + "'");
        return;
    }
    for (std::size_t i = before; i < values.size() && !isAttribute; ++i)
        if (values[i].attribute == value.attribute && values[i].presence != Presence::no) {
            check(field, values[i]);
            reportTwin(field, i);
        }
}

void RecordReader::record(const clang::CXXRecordDecl& record, const StageValue& outer) {
    if (record.isInvalidDecl() || !record.isCompleteDefinition())
        return;
    const clang::ASTRecordLayout& layout = context.getASTRecordLayout(&record);
    for (const clang::CXXBaseSpecifier& base : record.bases()) {
        StageValue value = outer;
        const clang::CXXRecordDecl* of = base.getType()->getAsCXXRecordDecl();
        value.offset += static_cast<std::uint64_t>(layout.getBaseClassOffset(of).getQuantity());
        this->record(*of, value);
    }
    for (const clang::FieldDecl* member : record.fields()) {
        StageValue value = outer;
        const std::string name = member->getName().str();
        value.name += (outer.name.empty() || name.empty() ? "" : ".") + name;
        value.offset += layout.getFieldOffset(member->getFieldIndex()) / 8;
        field(*member, std::move(value));
    }
}

} // namespace

std::optional<Interpolation> interpolationNamed(std::string_view word) {
    const auto* found =
        std::ranges::find(interpolations, word, &decltype(interpolations)::value_type::first);
    return found == interpolations.end() ? std::nullopt : std::optional(found->second);
}

bool readShape(const clang::ASTContext& context, QualType type, StageValue& value) {
    if (const auto* array = context.getAsConstantArrayType(type)) {
        value.index = static_cast<std::uint32_t>(array->getZExtSize());
        type = array->getElementType();
    }
    if (const auto* vector = type->getAs<clang::VectorType>()) {
        value.width = vector->getNumElements();
        type = vector->getElementType();
    } else if (const auto* made = libraryClass(type); made && made->getName() == "bool_vector") {
        value.width =
            static_cast<std::uint32_t>(made->getTemplateArgs()[0].getAsIntegral().getZExtValue());
        value.scalar = Scalar::bool_;
        return true;
    }
    const auto found = scalarOf(type);
    if (found)
        value.scalar = *found;
    return found.has_value();
}

std::vector<StageValue> stageValues(clang::ASTContext& context, const clang::CXXRecordDecl& record,
                                    const StagePlace& place) {
    RecordReader reader(context, place);
    reader.record(record, {});
    const auto varyings =
        std::count_if(reader.values.begin(), reader.values.end(), [](const StageValue& v) {
            return v.attribute.empty() && v.presence != Presence::no;
        });
    if (static_cast<std::size_t>(varyings) > mostVaryings) {
        reportError(context.getDiagnostics(), record.getLocation(),
                    "'%0' has more than %1 values to pass between the stages", record.getName(),
                    std::to_string(mostVaryings));
    }
    return std::move(reader.values);
}

} // namespace tarnwick::msl
