// The signs of atomic integers, which WGSL declares with their memory.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Body.h"

#include <optional>

namespace tarnwick::msl::wgsl {

// The sign of the numbers that an atomic minimum or maximum compares; absent for other
// instructions.
std::optional<Sign> comparedSign(const llvm::Instruction& instruction);

// The sign of the atomic integers in the memory of a root: that of its minima and maxima, unsigned
// if it has both.
Sign signOfAtomics(const llvm::Function& main, const llvm::Value& root);

} // namespace tarnwick::msl::wgsl
