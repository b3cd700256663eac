// Loops that follow one another, in numbers that the packaged CPU driver cannot bear.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/STLFunctionalExtras.h>
#include <llvm/ADT/SmallVector.h>

namespace llvm {
class Loop;
class LoopInfo;
} // namespace llvm

namespace tarnwick::msl {

// The headers of loops without inner loops that end long rows of such loops, in the program's
// order. Only loops that `mayEnd` are chosen.
llvm::SmallVector<llvm::BasicBlock*, 4> rowEnds(const llvm::LoopInfo& loops,
                                                llvm::function_ref<bool(const llvm::Loop&)> mayEnd);

// Puts the loop into another one that runs once. Its header must be left by a phi's value alone.
void enclose(llvm::BasicBlock& header, Structure& structure);

} // namespace tarnwick::msl
