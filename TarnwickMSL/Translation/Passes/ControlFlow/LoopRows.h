// Divides long rows of consecutive loops, which the packaged CPU driver cannot compile.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/SmallVector.h>

namespace llvm {
class LoopInfo;
} // namespace llvm

namespace tarnwick::msl {

// The headers of the loops, without inner loops, at which long rows of such loops are divided, in
// program order.
llvm::SmallVector<llvm::BasicBlock*, 4> rowEnds(const llvm::LoopInfo& loops);

// Wraps the loop, which its header leaves, in another loop that runs once.
void enclose(llvm::BasicBlock& header, Structure& structure);

} // namespace tarnwick::msl
