#include "programs/MSL/EntryListing.h"

#include "programs/MSL/MSLNames.h"

#include <algorithm>

namespace tarnwick {
namespace {

using msl::EntryPoint;
using msl::Resource;

// "texture(3)", or "buffer(0) id(2)" for a member of an argument buffer.
std::string placeOf(const EntryPoint& entry, const Resource& resource, std::string_view attribute) {
    using msl::MemberKind;
    const MemberKind kind = attribute == "texture"   ? MemberKind::texture
                            : attribute == "sampler" ? MemberKind::sampler
                                                     : MemberKind::buffer;
    for (const msl::ArgumentMember& member : entry.members)
        if (member.kind == kind && member.index == resource.index)
            return "buffer(" + std::to_string(member.buffer) + ") id(" + std::to_string(member.id) +
                   ")";
    return std::string(attribute) + "(" + std::to_string(resource.index) + ")";
}

std::string lineOf(const EntryPoint& entry, const Resource& resource) {
    const ResourceName& name = resourceNames[static_cast<std::size_t>(resource.kind)];
    std::string line = "  binding " + std::to_string(resource.binding) + ": ";
    if (!name.attribute.empty())
        line += placeOf(entry, resource, name.attribute) + ", ";
    line += name.kind;
    if (!resource.format.empty())
        line += " " + resource.format;
    if (resource.size != 0)
        line += ", " + std::to_string(resource.size) + " bytes";
    return line + (resource.isWritten ? ", written\n" : "\n");
}

std::string lineOf(const msl::FunctionConstant& constant) {
    return "  function constant " + std::to_string(constant.index) + ": " +
           typeName(constant.scalar, constant.width) + " " + constant.name +
           (constant.isRequired ? ", required\n" : "\n");
}

} // namespace

std::string listing(const EntryPoint& entry) {
    std::string text =
        std::string(nameIn(stageNames, entry.stage)) + " " + entry.name + ", " +
        (entry.text.empty() ? std::to_string(entry.words.size()) + " words\n"
                            : std::to_string(std::ranges::count(entry.text, '\n')) + " lines\n");
    for (const Resource& resource : entry.resources)
        text += lineOf(entry, resource);
    for (const msl::Override& constant : entry.overrides)
        text += "  override " + std::to_string(constant.id) + ": " + typeName(constant.scalar, 1) +
                " " + constant.name + "\n";
    for (const std::string& feature : entry.features)
        text += "  feature " + feature + "\n";
    for (const msl::FunctionConstant& constant : entry.constants)
        text += lineOf(constant);
    return text;
}

} // namespace tarnwick
