// Which operands of an instruction are ids, for code that changes ids or follows them. Instructions
// that are not in the table of IdOperands.cpp are unknown here.
#pragma once

#include "TarnwickSpirv/Instruction.h"

#include <cstddef>
#include <optional>

namespace tarnwick::spirv {

bool isKnown(spv::Op op);
// Whether an operand, counted from 0 and not the result, is an id; false for unknown instructions.
bool isIdOperand(spv::Op op, std::size_t operand);
// Which operand the result is; absent for unknown instructions and those without a result.
std::optional<std::size_t> resultOperand(spv::Op op);
std::optional<Id> resultOf(const Instruction& instruction);
// The ids that the instruction uses: its type among them, its result not. Absent for unknown ones.
std::optional<Words> idsOf(const Instruction& instruction);

} // namespace tarnwick::spirv
