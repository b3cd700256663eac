// Selections as SPIR-V has them.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// After structureLoops. Gives each branch that belongs to no loop a merge block of its own and adds
// it to `structure`.
void structureSelections(llvm::Function& main, Structure& structure);

} // namespace tarnwick::msl
