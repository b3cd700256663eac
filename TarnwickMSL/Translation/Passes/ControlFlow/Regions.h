// Turns any control flow into nested regions with one entry and one exit each.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

class Optimiser;

// Requires the flow of normaliseFlow. Afterwards each loop is left only from its latch, or from its
// header if the loop of the source is; `structure` then lists the loop. The counter of budgetLoops
// becomes values.
void makeRegions(llvm::Function& main, Structure& structure, Optimiser& optimiser);

} // namespace tarnwick::msl
