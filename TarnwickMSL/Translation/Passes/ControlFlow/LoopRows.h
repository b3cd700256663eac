// Divides long rows of consecutive loops, which the packaged CPU driver cannot compile.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/STLFunctionalExtras.h>
#include <llvm/ADT/SmallVector.h>

namespace llvm {
class Loop;
class LoopInfo;
} // namespace llvm

namespace tarnwick::msl {

// The headers of the loops, without inner loops, at which long rows of such loops are divided, in
// program order. Only loops that `mayEnd` accepts are chosen.
llvm::SmallVector<llvm::BasicBlock*, 4> rowEnds(const llvm::LoopInfo& loops,
                                                llvm::function_ref<bool(const llvm::Loop&)> mayEnd);

// Wraps the loop in another loop that runs once. Its header must be left by the value of a phi
// only.
void enclose(llvm::BasicBlock& header, Structure& structure);

} // namespace tarnwick::msl
