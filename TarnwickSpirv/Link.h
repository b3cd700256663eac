// Joins two SPIR-V modules, so that code of one can call functions of the other.
#pragma once

#include "TarnwickSpirv/Module.h"

#include <map>
#include <optional>

namespace tarnwick::spirv {

// Adds the contents of `from` to `into`, without the execution modes, and returns the new id of
// each id of `from`. Merges equal types and constants of both. Absent, with `into` unchanged, if
// a section has an instruction that IdOperands.h does not know or `from` requires an extension.
std::optional<std::map<Id, Id>> link(Module& into, const Module& from);

} // namespace tarnwick::spirv
