// A nest of regions with one entry and one exit each, out of any control flow.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

class Optimiser;

// For flow as normaliseFlow leaves it. Each loop is left from its latch alone, or from its header
// where the source's loop is; `structure` then has the loop. The counter of budgetLoops becomes
// values.
void makeRegions(llvm::Function& main, Structure& structure, Optimiser& optimiser);

} // namespace tarnwick::msl
