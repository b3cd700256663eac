// Gives loops the structure that SPIR-V requires.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Requires the regions of makeRegions. Makes a header, a continue target and a merge block for each
// loop that `structure` does not list. Values leave loops in the form that the packaged CPU driver
// requires (docs/compiler.md).
void structureLoops(llvm::Function& main, Structure& structure);

} // namespace tarnwick::msl
