// Loops whose end nobody can prove count their rounds, and end the invocation past a budget.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

class Optimiser;

// For flow as normaliseFlow leaves it. Loops that together are known to stay below the CPU
// driver's own limit are left alone; the others add their rounds to one counter in memory, compare
// it with what the built-in call `msl.loop_budget` gives, and past it leave for a block that stores
// 1 to `msl.loop_report`. Sets shader.usesLoopBudget.
void budgetLoops(ShaderModule& shader, Optimiser& optimiser);

// Whether the pointer is the counter's place in memory.
bool isCounter(const llvm::Value& pointer);

// Takes the counter out of memory again; for structured regions before their merges are made.
void promoteCounter(llvm::Function& main);

} // namespace tarnwick::msl
