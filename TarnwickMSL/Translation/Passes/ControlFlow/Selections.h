// Gives branches the structure that SPIR-V requires.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Must run after structureLoops. Makes a merge block for each branch that is not part of a loop,
// and adds it to `structure`.
void structureSelections(llvm::Function& main, Structure& structure);

} // namespace tarnwick::msl
