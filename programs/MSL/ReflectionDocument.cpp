#include "programs/MSL/ReflectionDocument.h"

#include "TarnwickMSL/Capabilities.h"
#include "TarnwickMSL/SamplerBits.h"
#include "programs/MSL/MSLNames.h"
#include "programs/Terminal/JSONText.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

// clang-format off
constexpr std::array<std::string_view, 3> diagnosticNames{"error", "warning", "note"};
constexpr std::array<std::string_view, 5> tableNames{"buffer", "texture", "sampler", "threadgroup", "accelerationStructure"};
constexpr std::array<std::string_view, 5> accessNames{"none", "read", "write", "read_write", "sample"};
constexpr std::array<std::string_view, 11> shapeNames{"none", "buffer", "1d", "1d_array", "2d", "2d_array", "2d_ms", "2d_ms_array", "3d", "cube", "cube_array"};
constexpr std::array<std::string_view, 5> componentNames{"none", "float", "int", "uint", "ulong"};
constexpr std::array<std::string_view, 4> memberNames{"constants", "buffer", "texture", "sampler"};
constexpr std::array<std::string_view, 3> patchNames{"none", "triangle", "quad"};
constexpr std::array<std::string_view, 2> coordNames{"normalized", "pixel"};
constexpr std::array<std::string_view, 6> addressNames{"clamp_to_zero", "clamp_to_edge", "repeat", "mirrored_repeat", "clamp_to_border", "mirror_clamp_to_edge"};
constexpr std::array<std::string_view, 2> filterNames{"nearest", "linear"};
constexpr std::array<std::string_view, 3> mipNames{"none", "nearest", "linear"};
constexpr std::array<std::string_view, 3> borderNames{"transparent_black", "opaque_black", "opaque_white"};
constexpr std::array<std::string_view, 8> compareNames{"never", "less", "less_equal", "greater", "greater_equal", "equal", "not_equal", "always"};
// clang-format on

ordered_json objectOf(const msl::Diagnostic& diagnostic) {
    return {{"kind", nameIn(diagnosticNames, diagnostic.kind)},
            {"file", diagnostic.file},
            {"line", diagnostic.line},
            {"column", diagnostic.column},
            {"length", diagnostic.length},
            {"text", diagnostic.text}};
}

void addType(ordered_json& object, const msl::ReflectedType& type) {
    object["type"] = type.name;
    object["bytes"] = type.bytes;
    object["alignment"] = type.alignment;
    if (type.record != msl::noRecord)
        object["record"] = type.record;
    if (type.columns != 0)
        object["columns"] = type.columns;
}

ordered_json objectOf(const msl::Record& record) {
    ordered_json members = ordered_json::array();
    for (const msl::RecordMember& member : record.members) {
        ordered_json object{{"name", member.name}, {"offset", member.offset}};
        addType(object, member.type);
        if (member.count != 0) {
            object["count"] = member.count;
            object["stride"] = member.stride;
        }
        if (member.isPointer)
            object["pointer"] = true;
        members.push_back(std::move(object));
    }
    return {{"name", record.name},
            {"bytes", record.bytes},
            {"alignment", record.alignment},
            {"members", std::move(members)}};
}

ordered_json objectOf(const msl::ReflectedArgument& argument) {
    ordered_json object{{"name", argument.name},
                        {"table", nameIn(tableNames, argument.table)},
                        {"index", argument.index},
                        {"count", argument.count}};
    addType(object, argument.type);
    object["access"] = nameIn(accessNames, argument.access);
    if (argument.table == msl::ArgumentTable::buffer) {
        object["addressSpace"] = argument.isConstant ? "constant" : "device";
        object["reference"] = argument.isReference;
    }
    return object;
}

ordered_json samplerObject(std::uint64_t bits) {
    const msl::SamplerState state = msl::unpackSampler(bits);
    return {{"coord", nameIn(coordNames, state.coord)},
            {"address",
             {nameIn(addressNames, state.s), nameIn(addressNames, state.t),
              nameIn(addressNames, state.r)}},
            {"magFilter", nameIn(filterNames, state.mag)},
            {"minFilter", nameIn(filterNames, state.min)},
            {"mipFilter", nameIn(mipNames, state.mip)},
            {"borderColor", nameIn(borderNames, state.border)},
            {"compare", state.compares ? nameIn(compareNames, state.compare) : "none"},
            {"maxAnisotropy", state.maxAnisotropy},
            {"lodClamp", {state.lodMin, state.lodMax}}};
}

ordered_json objectOf(const msl::Resource& resource) {
    const ResourceName& name = resourceNames[static_cast<std::size_t>(resource.kind)];
    ordered_json object{{"set", 0}, {"binding", resource.binding}, {"kind", name.kind}};
    if (!name.attribute.empty())
        object["index"] = resource.index;
    if (resource.size != 0)
        object["bytes"] = resource.size;
    object["written"] = resource.isWritten;
    if (resource.shape != msl::TextureShape::none)
        object["texture"] = {{"shape", nameIn(shapeNames, resource.shape)},
                             {"component", nameIn(componentNames, resource.component)},
                             {"depth", resource.isDepth},
                             {"level", resource.level},
                             {"atomic", resource.isAtomic}};
    if (!resource.format.empty())
        object["format"] = resource.format;
    if (resource.kind == msl::ResourceKind::constantSampler)
        object["sampler"] = samplerObject(resource.samplerState);
    if (resource.kind == msl::ResourceKind::sampler)
        object["compares"] = (resource.samplerState & msl::samplerComparesBit) != 0;
    return object;
}

ordered_json objectOf(const msl::ArgumentMember& member) {
    ordered_json object{{"kind", nameIn(memberNames, member.kind)},
                        {"buffer", member.buffer},
                        {"id", member.id},
                        {"offset", member.offset},
                        {"bytes", member.bytes},
                        {"stride", member.stride}};
    if (member.kind != msl::MemberKind::constants)
        object["index"] = member.index;
    return object;
}

ordered_json objectOf(const msl::StageAttribute& attribute) {
    return {{"name", attribute.name},
            {"index", attribute.index},
            {"type", typeName(attribute.scalar, attribute.width)},
            {"controlPoint", attribute.isOfControlPoint},
            {"fetch", attribute.fetch}};
}

ordered_json objectOf(const msl::FunctionConstant& constant) {
    return {{"name", constant.name},
            {"index", constant.index},
            {"type", typeName(constant.scalar, constant.width)},
            {"required", constant.isRequired},
            {"specialisationConstants",
             {{"first", msl::functionConstantComponent(constant.index, 0)},
              {"presence", msl::functionConstantPresence(constant.index)}}}};
}

ordered_json objectOf(const msl::Override& constant) {
    return {{"id", constant.id}, {"name", constant.name}, {"type", typeName(constant.scalar, 1)}};
}

template <class List> ordered_json arrayOf(const List& list) {
    ordered_json array = ordered_json::array();
    for (const auto& one : list)
        array.push_back(objectOf(one));
    return array;
}

ordered_json objectOf(const msl::EntryPoint& entry, const msl::Reflection& reflection) {
    ordered_json object{{"name", entry.name},
                        {"stage", nameIn(stageNames, entry.stage)},
                        {"words", entry.words.size()},
                        {"capabilities", msl::capabilitiesOf(entry.words)}};
    const auto reflected =
        std::ranges::find(reflection.entries, entry.name, &msl::ReflectedEntry::name);
    if (reflected != reflection.entries.end())
        object["arguments"] = arrayOf(reflected->arguments);
    object["bindings"] = arrayOf(entry.resources);
    object["argumentMembers"] = arrayOf(entry.members);
    object["attributes"] = arrayOf(entry.attributes);
    object["functionConstants"] = arrayOf(entry.constants);
    ordered_json colors = ordered_json::array();
    for (std::uint32_t color = 0; color < 32; ++color)
        if (entry.colorAttachments >> color & 1)
            colors.push_back(color);
    object["colors"] = std::move(colors);
    object["threadgroup"] = {{"bytes", entry.threadgroupBytes},
                             {"pointers", entry.threadgroupPointers},
                             {"maxThreads", entry.mostThreads}};
    object["patch"] = {{"kind", nameIn(patchNames, entry.patch)},
                       {"controlPoints", entry.controlPoints}};
    object["usesLoopBudget"] = entry.usesLoopBudget;
    object["needsStandardSamples"] = entry.needsStandardSamples;
    object["needsEightLanes"] = entry.needsEightLanes;
    object["writesPointSize"] = entry.writesPointSize;
    object["storesByAddress"] = entry.storesByAddress;
    object["shapedByConstants"] = entry.isShapedByConstants;
    if (!entry.text.empty())
        object["wgsl"] = {{"text", entry.text},
                          {"overrides", arrayOf(entry.overrides)},
                          {"features", entry.features}};
    return object;
}

} // namespace

std::string reflectionDocument(const msl::Compilation& compilation, std::string_view file,
                               std::string_view only) {
    ordered_json entries = ordered_json::array();
    for (const msl::EntryPoint& entry : compilation.entryPoints)
        if (only.empty() || entry.name == only)
            entries.push_back(objectOf(entry, compilation.reflection));
    const ordered_json document{{"file", file},
                                {"compiled", !compilation.failed},
                                {"diagnostics", arrayOf(compilation.diagnostics)},
                                {"files", compilation.files},
                                {"entryPoints", std::move(entries)},
                                {"records", arrayOf(compilation.reflection.records)}};
    return jsonText(document) + "\n";
}

} // namespace tarnwick
