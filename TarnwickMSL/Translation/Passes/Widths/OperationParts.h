// Arithmetic and comparisons of types that the target lacks.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/PartMap.h"

#include <optional>

namespace tarnwick::msl {

// The parts of the result; nothing if the instruction is not known.
std::optional<Parts> loweredOperation(llvm::Instruction& instruction, const PartMap& parts,
                                      FoldingBuilder& builder);

} // namespace tarnwick::msl
