#include "TarnwickMSL/Translation/Passes/Memory/ArgumentRecords.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/STLExtras.h>

#include <algorithm>

namespace tarnwick::msl {

using namespace llvm;

std::string argumentGlobal(std::uint32_t index) {
    return "msl.buffer." + std::to_string(index);
}

ArgumentRecords::ArgumentRecords(ShaderModule& shader, std::uint32_t buffer)
    : shader_(shader), buffer_(buffer) {
    for (const ArgumentMember& member : shader.members)
        if (member.buffer == buffer)
            stride_ = std::max<std::uint64_t>(stride_, member.stride);
}

const ArgumentMember* ArgumentRecords::memberAt(std::int64_t offset) const {
    auto found = find_if(shader_.members, [&](const ArgumentMember& member) {
        return member.buffer == buffer_ && member.offset == offset;
    });
    return found == shader_.members.end() ? nullptr : &*found;
}

// Rounds down: a step may lead to a record before the first.
std::int64_t ArgumentRecords::recordAt(std::int64_t offset) const {
    const auto stride = static_cast<std::int64_t>(stride_);
    return (offset >= 0 ? offset : offset - stride + 1) / stride;
}

const ArgumentMember* ArgumentRecords::memberOfAnyRecord(std::int64_t offset) const {
    return memberAt(offset - recordAt(offset) * static_cast<std::int64_t>(stride_));
}

void ArgumentRecords::holdRecordAt(std::int64_t offset) {
    const std::int64_t start = recordAt(offset) * static_cast<std::int64_t>(stride_);
    if (start <= 0 || start > UINT32_MAX - static_cast<std::int64_t>(stride_))
        return;
    SmallVector<ArgumentMember, 8> missing;
    for (const ArgumentMember& member : shader_.members)
        if (member.buffer == buffer_ && member.offset < stride_ && !memberAt(start + member.offset))
            missing.push_back(member);
    for (const ArgumentMember& member : missing)
        hold(member, static_cast<std::uint32_t>(start) + member.offset);
}

void ArgumentRecords::hold(const ArgumentMember& ofFirst, std::uint32_t offset) {
    ArgumentMember member = ofFirst;
    member.offset = offset;
    if (member.kind == MemberKind::texture)
        member.index = newTexture(ofFirst.index);
    else if (member.kind == MemberKind::sampler)
        member.index = newSampler();
    else if (member.kind == MemberKind::buffer)
        member.index = newBuffer(ofFirst.index);
    shader_.members.push_back(member);
}

std::uint32_t ArgumentRecords::newTexture(std::uint32_t like) {
    std::uint32_t next = firstMemberTexture;
    for (const TextureVariable& texture : shader_.textures)
        next = std::max(next, texture.index + 1);
    auto known =
        find_if(shader_.textures, [&](const TextureVariable& each) { return each.index == like; });
    if (known == shader_.textures.end())
        throw CompilerFault("A member of an argument buffer has no texture.");
    TextureVariable texture = *known;
    texture.index = next;
    shader_.textures.push_back(texture);
    return next;
}

std::uint32_t ArgumentRecords::newSampler() {
    std::uint32_t next = mostSamplers;
    for (std::uint32_t index : shader_.samplers)
        next = std::max(next, index + 1);
    shader_.samplers.push_back(next);
    return next;
}

std::uint32_t ArgumentRecords::newBuffer(std::uint32_t like) {
    std::uint32_t next = firstMemberBuffer;
    for (const ArgumentMember& member : shader_.members)
        if (member.kind == MemberKind::buffer)
            next = std::max(next, member.index + 1);
    Module& module = *shader_.module;
    const GlobalVariable& known = *module.getNamedGlobal(argumentGlobal(like));
    InterfaceVariable variable = *find_if(shader_.interface, [&](const InterfaceVariable& each) {
        return each.global == argumentGlobal(like);
    });
    variable.index = next;
    variable.global = argumentGlobal(next);
    shader_.interface.push_back(variable);
    new GlobalVariable(module, known.getValueType(), known.isConstant(), known.getLinkage(),
                       nullptr, variable.global, nullptr, GlobalValue::NotThreadLocal, 0u);
    return next;
}

} // namespace tarnwick::msl
