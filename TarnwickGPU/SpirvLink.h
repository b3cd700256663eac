// Joins two SPIR-V modules, so that code of the one can call the other's.
#pragma once

#include "TarnwickGPU/SpirvCode.h"

#include <map>
#include <optional>

namespace tarnwick::gpu {

// Adds what `from` holds to `into`, the execution modes aside, and gives the ids that its ids have
// become. Nothing, and `into` as it was, where a function holds an instruction that kernels do not
// take or that is not known here: derivatives, sampling with implied levels, switches.
std::optional<std::map<Id, Id>> link(SpirvCode& into, const SpirvCode& from);

} // namespace tarnwick::gpu
