// Control flow as SPIR-V wants it: every branch has its merge, every loop one way out.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

class Optimiser;

// One return, no switch, no unreachable code, loops with one entry, one latch and a way out.
// Afterwards the loops can be counted.
void normaliseFlow(llvm::Function& main, Optimiser& optimiser);

// Makes nests of single-entry, single-exit regions of the rest and lists their merges. Values that
// leave loops do so in the shape that the packaged CPU driver needs (docs/compiler.md).
Structure structureFlow(llvm::Function& main, Optimiser& optimiser);

} // namespace tarnwick::msl
