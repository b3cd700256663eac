// Joins two SPIR-V modules, so that code of the one can call the other's.
#pragma once

#include "TarnwickGPU/Points/SpirvCode.h"

#include <map>
#include <optional>

namespace tarnwick::gpu {

// Adds what `from` holds to `into`, the execution modes aside, and gives the ids that its ids have
// become. Nothing, and `into` as it was, where a function holds an instruction that kernels do not
// take or that is not known here: derivatives, sampling with implied levels, switches.
std::optional<std::map<Id, Id>> link(SpirvCode& into, const SpirvCode& from);

// The ids that an instruction of a function names, its type among them and its result not; nothing
// for instructions that are not known here.
std::optional<Words> idsOf(const Instruction& instruction);
// Whether an operand, counted from 0 and not the result, is an id; of known instructions.
bool isIdOperand(spv::Op op, std::size_t operand);
// The id that it gives, if any.
std::optional<Id> resultOf(const Instruction& instruction);

} // namespace tarnwick::gpu
