// Which operands of an instruction are ids, for code that changes ids or follows them. Instructions
// that are not in the table of IdOperands.cpp are unknown here.
#pragma once

#include "TarnwickSpirv/Instruction.h"

#include <cstddef>
#include <optional>

namespace tarnwick::spirv {

bool isKnown(spv::Op op);
// Whether an operand (index from 0) is an id other than the result; false for unknown instructions.
bool isIdOperand(spv::Op op, std::size_t operand);
// The index of the result; absent for unknown instructions and instructions without a result.
std::optional<std::size_t> resultOperand(spv::Op op);
std::optional<Id> resultOf(const Instruction& instruction);
// The ids that the instruction uses: with its type, without its result. Absent if it is unknown.
std::optional<Words> idsOf(const Instruction& instruction);

} // namespace tarnwick::spirv
