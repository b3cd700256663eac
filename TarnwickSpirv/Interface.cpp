#include "TarnwickSpirv/Interface.h"

#include <algorithm>

namespace tarnwick::spirv {

namespace {

// Calls `take(target, value)` for each decoration of the kind that has a value.
template <typename Take>
void eachDecoration(const Module& module, spv::Decoration decoration, const Take& take) {
    eachInstruction(module.annotations, [&](const Instruction& each) {
        if (each.op == spv::Op::OpDecorate && each.operands.size() >= 3 &&
            each.operands[1] == static_cast<std::uint32_t>(decoration))
            take(each.operands[0], each.operands[2]);
    });
}

bool isOf(const Module& module, Id variable, spv::StorageClass storage) {
    const auto found = module.variables().find(variable);
    return found != module.variables().end() &&
           module.pointerType(found->second).storage == storage;
}

} // namespace

std::optional<Id> builtIn(const Module& module, spv::BuiltIn builtIn) {
    std::optional<Id> found;
    eachDecoration(module, spv::Decoration::BuiltIn, [&](Id target, std::uint32_t value) {
        if (value == static_cast<std::uint32_t>(builtIn) && module.variables().contains(target))
            found = target;
    });
    return found;
}

std::map<std::uint32_t, Id> locations(const Module& module, spv::StorageClass storage) {
    std::map<std::uint32_t, Id> found;
    const std::vector<Id> others = secondSources(module);
    eachDecoration(module, spv::Decoration::Location, [&](Id target, std::uint32_t location) {
        if (isOf(module, target, storage) && std::ranges::find(others, target) == others.end())
            found[location] = target;
    });
    return found;
}

std::vector<Id> secondSources(const Module& module) {
    std::vector<Id> found;
    eachDecoration(module, spv::Decoration::Index, [&](Id target, std::uint32_t index) {
        if (index == 1)
            found.push_back(target);
    });
    return found;
}

std::vector<Id> variables(const Module& module, spv::StorageClass storage) {
    std::vector<Id> found;
    for (const auto& [variable, type] : module.variables())
        if (module.pointerType(type).storage == storage)
            found.push_back(variable);
    return found;
}

Id pointee(const Module& module, Id variable) {
    return module.pointerType(module.variables().at(variable)).pointee;
}

std::optional<std::uint32_t> specialisation(const Module& module, Id constant) {
    std::optional<std::uint32_t> found;
    eachDecoration(module, spv::Decoration::SpecId, [&](Id target, std::uint32_t number) {
        if (target == constant)
            found = number;
    });
    return found;
}

std::optional<Id> specialised(const Module& module, std::uint32_t number) {
    std::optional<Id> found;
    eachDecoration(module, spv::Decoration::SpecId, [&](Id target, std::uint32_t value) {
        if (value == number)
            found = target;
    });
    return found;
}

} // namespace tarnwick::spirv
