// Gives specialisation constants their values in the module itself (SPIR-V 1.6, 2.12).
#pragma once

#include "TarnwickSpirv/Instruction.h"

#include <map>

namespace tarnwick::spirv {

// The words of each value as OpConstant has them, by the number of the constant (SpecId); a bool is
// one word, 0 or 1.
using SpecialisationValues = std::map<std::uint32_t, Words>;

// The module with these specialisation constants as ordinary constants. Values for constants that
// the module does not have are ignored.
Words specialised(Operands module, const SpecialisationValues& values);

} // namespace tarnwick::spirv
