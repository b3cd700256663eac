// Finds the global variables of a module by their decorations, and its specialisation constants.
#pragma once

#include "TarnwickSpirv/Module.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace tarnwick::spirv {

// The variable of a built-in value. Absent if it is not a variable of its own.
std::optional<Id> builtIn(const Module& module, spv::BuiltIn builtIn);
// The variables of a storage class that have locations, by location, without second sources.
std::map<std::uint32_t, Id> locations(const Module& module, spv::StorageClass storage);
// The outputs that are second sources of blending (Index 1).
std::vector<Id> secondSources(const Module& module);
std::vector<Id> variables(const Module& module, spv::StorageClass storage);
Id pointee(const Module& module, Id variable); // the type of its value

// The number (SpecId) of a specialisation constant, and the constant with a number.
std::optional<std::uint32_t> specialisation(const Module& module, Id constant);
std::optional<Id> specialised(const Module& module, std::uint32_t number);

} // namespace tarnwick::spirv
