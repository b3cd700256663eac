// Atomic operations that some devices lack.
#pragma once

#include "TarnwickMSL/Target.h"

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Turns atomic sums of floats into loops of compare-exchanges; sums in buffers only if the target
// lacks them. Returns whether the code changed.
bool expandAtomics(llvm::Function& main, const Target& target);

} // namespace tarnwick::msl
