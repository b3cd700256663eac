// Counts the rounds of loops without a provable end, and ends the invocation when they exceed a
// budget.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

class Optimiser;

// Requires the flow of normaliseFlow. Loops whose total is provably below the limit of the CPU
// driver are unchanged. The other loops add their rounds to one counter in memory and compare it
// with the result of the built-in call `msl.loop_budget`; above it they branch to a block that
// stores 1 to `msl.loop_report`. A kernel with a gridMark has two counters. Sets
// shader.usesLoopBudget.
void budgetLoops(ShaderModule& shader, Optimiser& optimiser);

// Whether the pointer is the address of a counter in memory.
bool isCounter(const llvm::Value& pointer);

// Turns the counters into values; for structured regions before their merges are made.
void promoteCounters(llvm::Function& main);

} // namespace tarnwick::msl
