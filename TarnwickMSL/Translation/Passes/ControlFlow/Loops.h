// Loops as SPIR-V has them.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// For regions as makeRegions leaves them. Gives each loop that `structure` does not have a header
// of its own, a continue target and a merge block. Values that leave loops do so in the shape that
// the packaged CPU driver needs (docs/compiler.md).
void structureLoops(llvm::Function& main, Structure& structure);

} // namespace tarnwick::msl
