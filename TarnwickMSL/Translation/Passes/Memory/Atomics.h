// Atomic operations that not every device has.
#pragma once

#include "TarnwickMSL/Target.h"

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Turns atomic sums of floats into loops of compare-exchanges, those in buffers only where the
// target lacks them. Gives whether it changed anything.
bool expandAtomics(llvm::Function& main, const Target& target);

} // namespace tarnwick::msl
