// `eachField` names each record's fields once, for writing and for reading.
#include "TarnwickMSL/Translation/Passes/Forms/Records.h"

#include <llvm/ADT/StringExtras.h>
#include <llvm/Support/raw_ostream.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <type_traits>

namespace tarnwick::msl {

// The words of an enumeration, by its values.
// clang-format off
static constexpr std::array stageWords{"vertex", "fragment", "kernel", "object", "mesh"};
static constexpr std::array scalarWords{"bool", "int8", "uint8", "int16", "uint16", "int32", "uint32", "half", "float", "int64", "uint64"};
static constexpr std::array interpolationWords{
    "center_perspective", "center_no_perspective", "centroid_perspective", "centroid_no_perspective",
    "sample_perspective", "sample_no_perspective", "flat"};
static constexpr std::array argumentWords{"buffer", "texture", "sampler", "threadgroup", "stage_in", "built_in", "acceleration_structure", "payload", "mesh_grid", "mesh"};
static constexpr std::array topologyWords{"none", "point", "line", "triangle"};
static constexpr std::array presenceWords{"yes", "no", "open"};
static constexpr std::array spaceWords{"constant", "device", "threadgroup"};
static constexpr std::array interfaceWords{
    "input", "output", "uniform_buffer", "storage_buffer", "push_constant", "workgroup", "payload", "loop_report",
    "buffer_addresses"};
static constexpr std::array shapeWords{
    "none", "buffer", "1d", "1d_array", "2d", "2d_array", "2d_ms", "2d_ms_array", "3d", "cube", "cube_array"};
static constexpr std::array patchWords{"none", "triangle", "quad"};
static constexpr std::array memberWords{"constants", "buffer", "texture", "sampler"};
static constexpr std::array componentWords{"none", "float", "int", "uint", "ulong"};
// clang-format on

template <class Enum> static constexpr const auto& wordsOf() {
    if constexpr (std::is_same_v<Enum, Stage>)
        return stageWords;
    else if constexpr (std::is_same_v<Enum, Scalar>)
        return scalarWords;
    else if constexpr (std::is_same_v<Enum, Interpolation>)
        return interpolationWords;
    else if constexpr (std::is_same_v<Enum, ArgumentKind>)
        return argumentWords;
    else if constexpr (std::is_same_v<Enum, Presence>)
        return presenceWords;
    else if constexpr (std::is_same_v<Enum, AddressSpace>)
        return spaceWords;
    else if constexpr (std::is_same_v<Enum, InterfaceKind>)
        return interfaceWords;
    else if constexpr (std::is_same_v<Enum, PatchKind>)
        return patchWords;
    else if constexpr (std::is_same_v<Enum, Topology>)
        return topologyWords;
    else if constexpr (std::is_same_v<Enum, MemberKind>)
        return memberWords;
    else if constexpr (std::is_same_v<Enum, TextureShape>)
        return shapeWords;
    else
        return componentWords;
}

static void eachField(const EntrySignature*, auto&& visit) {
    visit("name", &EntrySignature::name);
    visit("symbol", &EntrySignature::symbol);
    visit("place", &EntrySignature::place);
    visit("stage", &EntrySignature::stage);
    visit("result_is_record", &EntrySignature::resultIsRecord);
    visit("early_tests", &EntrySignature::earlyFragmentTests);
    visit("covers_after_depth", &EntrySignature::coversAfterDepth);
    visit("most_threads", &EntrySignature::mostThreads);
    visit("patch", &EntrySignature::patch);
    visit("control_points", &EntrySignature::controlPoints);
    visit("topology", &EntrySignature::topology);
    visit("most_vertices", &EntrySignature::mostVertices);
    visit("most_primitives", &EntrySignature::mostPrimitives);
}

static void eachField(const Argument*, auto&& visit) {
    visit("kind", &Argument::kind);
    visit("name", &Argument::name);
    visit("index", &Argument::index);
    visit("space", &Argument::space);
    visit("is_reference", &Argument::isReference);
    visit("element_bytes", &Argument::elementBytes);
    visit("element_align", &Argument::elementAlign);
    visit("element_type", &Argument::elementType);
    visit("has_raster_order", &Argument::hasRasterOrder);
    visit("is_coherent", &Argument::isCoherent);
    visit("shape", &Argument::shape);
    visit("component", &Argument::component);
    visit("is_depth", &Argument::isDepth);
    visit("is_read", &Argument::isRead);
    visit("is_written", &Argument::isWritten);
    visit("count", &Argument::count);
    visit("presence", &Argument::presence);
    visit("offset", &Argument::offset);
    visit("id", &Argument::id);
}

static void eachField(const ArgumentMember*, auto&& visit) {
    visit("kind", &ArgumentMember::kind);
    visit("buffer", &ArgumentMember::buffer);
    visit("id", &ArgumentMember::id);
    visit("offset", &ArgumentMember::offset);
    visit("bytes", &ArgumentMember::bytes);
    visit("index", &ArgumentMember::index);
    visit("stride", &ArgumentMember::stride);
}

static void eachField(const StageValue*, auto&& visit) {
    visit("name", &StageValue::name);
    visit("attribute", &StageValue::attribute);
    visit("index", &StageValue::index);
    visit("source", &StageValue::source);
    visit("interpolation", &StageValue::interpolation);
    visit("offset", &StageValue::offset);
    visit("scalar", &StageValue::scalar);
    visit("width", &StageValue::width);
    visit("is_interpolant", &StageValue::isInterpolant);
    visit("is_of_control_point", &StageValue::isOfControlPoint);
    visit("is_of_primitive", &StageValue::isOfPrimitive);
    visit("presence", &StageValue::presence);
}

static void eachField(const StageAttribute*, auto&& visit) {
    visit("name", &StageAttribute::name);
    visit("index", &StageAttribute::index);
    visit("scalar", &StageAttribute::scalar);
    visit("width", &StageAttribute::width);
    visit("is_of_control_point", &StageAttribute::isOfControlPoint);
}

static void eachField(const ConstantSignature*, auto&& visit) {
    visit("name", &ConstantSignature::name);
    visit("symbol", &ConstantSignature::symbol);
    visit("index", &ConstantSignature::index);
    visit("scalar", &ConstantSignature::scalar);
    visit("width", &ConstantSignature::width);
}

static void eachField(const InterfaceVariable*, auto&& visit) {
    visit("kind", &InterfaceVariable::kind);
    visit("global", &InterfaceVariable::global);
    visit("built_in", &InterfaceVariable::builtIn);
    visit("location", &InterfaceVariable::location);
    visit("is_of_patch", &InterfaceVariable::isOfPatch);
    visit("is_of_primitive", &InterfaceVariable::isOfPrimitive);
    visit("source", &InterfaceVariable::source);
    visit("scalar", &InterfaceVariable::scalar);
    visit("interpolation", &InterfaceVariable::interpolation);
    visit("index", &InterfaceVariable::index);
    visit("binding", &InterfaceVariable::binding);
    visit("element_bytes", &InterfaceVariable::elementBytes);
    visit("is_reference", &InterfaceVariable::isReference);
    visit("is_coherent", &InterfaceVariable::isCoherent);
    visit("name", &InterfaceVariable::name);
}

static void eachField(const TextureVariable*, auto&& visit) {
    visit("index", &TextureVariable::index);
    visit("binding", &TextureVariable::binding);
    visit("shape", &TextureVariable::shape);
    visit("component", &TextureVariable::component);
    visit("is_depth", &TextureVariable::isDepth);
    visit("is_read", &TextureVariable::isRead);
    visit("is_written", &TextureVariable::isWritten);
    visit("is_coherent", &TextureVariable::isCoherent);
    visit("name", &TextureVariable::name);
}

static void eachField(const TypeLacks*, auto&& visit) {
    visit("int8", &TypeLacks::int8);
    visit("int16", &TypeLacks::int16);
    visit("int64", &TypeLacks::int64);
    visit("half", &TypeLacks::half);
}

static void eachField(const ShaderModule*, auto&& visit) {
    visit("name", &ShaderModule::name);
    visit("stage", &ShaderModule::stage);
    visit("uses_loop_budget", &ShaderModule::usesLoopBudget);
    visit("early_tests", &ShaderModule::earlyFragmentTests);
    visit("covers_after_depth", &ShaderModule::coversAfterDepth);
    visit("orders_fragments", &ShaderModule::ordersFragments);
    visit("most_threads", &ShaderModule::mostThreads);
    visit("patch", &ShaderModule::patch);
    visit("control_points", &ShaderModule::controlPoints);
    visit("topology", &ShaderModule::topology);
    visit("most_vertices", &ShaderModule::mostVertices);
    visit("most_primitives", &ShaderModule::mostPrimitives);
    visit("is_shaped_by_constants", &ShaderModule::isShapedByConstants);
}

// In quotes where it is needed, with other characters as LLVM writes them: \22, and \\ for one \.
static void add(std::string& line, const char* name, const std::string& value) {
    const bool isQuoted = value.empty() || std::ranges::any_of(value, [](char c) {
                              return c == ' ' || c == '"' || c == '=' || !llvm::isPrint(c);
                          });
    line += std::string(" ") + name + "=";
    if (!isQuoted) {
        line += value;
        return;
    }
    llvm::raw_string_ostream stream(line);
    stream << '"';
    llvm::printEscapedString(value, stream);
    stream << '"';
}

// What stands between the quotes.
static std::string unescaped(std::string_view text) {
    std::string value;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("\\\\")) {
            value += '\\';
            at += 1;
        } else if (rest.size() > 2 && rest[0] == '\\' && llvm::isHexDigit(rest[1]) &&
                   llvm::isHexDigit(rest[2])) {
            value += static_cast<char>(llvm::hexFromNibbles(rest[1], rest[2]));
            at += 2;
        } else {
            value += rest[0];
        }
    }
    return value;
}

template <class Field> static std::string valueOf(const Field& field) {
    if constexpr (std::is_enum_v<Field>)
        return wordsOf<Field>()[static_cast<std::size_t>(field)];
    else if constexpr (std::is_same_v<Field, std::string>)
        return field;
    else
        return std::to_string(field);
}

// Whether `value` is one of the field.
template <class Field> static bool set(Field& field, const std::string& value) {
    if constexpr (std::is_same_v<Field, std::string>) {
        field = value;
        return true;
    } else if constexpr (std::is_enum_v<Field>) {
        const auto& words = wordsOf<Field>();
        const auto word = std::ranges::find(words, std::string_view(value));
        field = static_cast<Field>(word - words.begin());
        return word != words.end();
    } else {
        std::uint64_t number = 0;
        const char* end = value.data() + value.size();
        const auto [last, error] = std::from_chars(value.data(), end, number);
        field = static_cast<Field>(number);
        return error == std::errc() && last == end;
    }
}

using Fields = std::map<std::string, std::string, std::less<>>;

static Fields fieldsOf(std::string_view line) {
    Fields fields;
    std::size_t at = 0;
    while ((at = line.find('=', at)) != line.npos) {
        const std::size_t name = line.rfind(' ', at) + 1;
        const bool isQuoted = at + 1 < line.size() && line[at + 1] == '"';
        const std::size_t begin = at + (isQuoted ? 2 : 1);
        const std::size_t end = std::min(line.find(isQuoted ? '"' : ' ', begin), line.size());
        const std::string_view value = line.substr(begin, end - begin);
        fields.emplace(line.substr(name, at - name),
                       isQuoted ? unescaped(value) : std::string(value));
        at = end;
    }
    return fields;
}

template <class Record> std::string recordLine(std::string_view word, const Record& record) {
    std::string line = "; " + std::string(word);
    const Record plain;
    eachField(&record, [&](const char* name, auto member) {
        if (record.*member != plain.*member)
            add(line, name, valueOf(record.*member));
    });
    return line + "\n";
}

template <class Record>
std::optional<std::string> readRecord(std::string_view line, Record& record) {
    Fields fields = fieldsOf(line);
    eachField(&record, [&](const char* name, auto member) {
        const auto found = fields.find(name);
        if (found != fields.end() && set(record.*member, found->second))
            fields.erase(found);
    });
    if (fields.empty())
        return {};
    return fields.begin()->first + "=" + fields.begin()->second;
}

template std::string recordLine(std::string_view, const EntrySignature&);
template std::string recordLine(std::string_view, const Argument&);
template std::string recordLine(std::string_view, const StageValue&);
template std::string recordLine(std::string_view, const StageAttribute&);
template std::string recordLine(std::string_view, const ConstantSignature&);
template std::string recordLine(std::string_view, const ArgumentMember&);
template std::string recordLine(std::string_view, const InterfaceVariable&);
template std::string recordLine(std::string_view, const TextureVariable&);
template std::string recordLine(std::string_view, const TypeLacks&);
template std::string recordLine(std::string_view, const ShaderModule&);
template std::optional<std::string> readRecord(std::string_view, EntrySignature&);
template std::optional<std::string> readRecord(std::string_view, Argument&);
template std::optional<std::string> readRecord(std::string_view, StageValue&);
template std::optional<std::string> readRecord(std::string_view, StageAttribute&);
template std::optional<std::string> readRecord(std::string_view, ConstantSignature&);
template std::optional<std::string> readRecord(std::string_view, ArgumentMember&);
template std::optional<std::string> readRecord(std::string_view, InterfaceVariable&);
template std::optional<std::string> readRecord(std::string_view, TextureVariable&);
template std::optional<std::string> readRecord(std::string_view, TypeLacks&);
template std::optional<std::string> readRecord(std::string_view, ShaderModule&);

std::string_view recordWord(std::string_view line) {
    if (!line.starts_with("; "))
        return {};
    line.remove_prefix(2);
    return line.substr(0, line.find(' '));
}

std::string fieldOf(std::string_view line, std::string_view field) {
    const Fields fields = fieldsOf(line);
    const auto found = fields.find(field);
    return found == fields.end() ? std::string() : found->second;
}

} // namespace tarnwick::msl
