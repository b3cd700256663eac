// Divides long rows of consecutive loops, which the packaged CPU driver cannot compile.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/SmallVector.h>

namespace llvm {
class LoopInfo;
} // namespace llvm

namespace tarnwick::msl {

// How a loop is wrapped in another one that runs once.
enum class Enclosure {
    vanishes, // with a loop that the driver unrolls; the loop's header leaves it
    stays,
};

// A loop that ends a row of loops without inner loops: one of them, or one that begins with one.
struct RowEnd {
    llvm::BasicBlock* header = nullptr;
    Enclosure enclosure = Enclosure::stays;
};

// Where long rows are divided, in program order.
llvm::SmallVector<RowEnd, 4> rowEnds(const llvm::LoopInfo& loops);

// Wraps the structured loop in another loop that runs once.
void enclose(llvm::BasicBlock& header, Enclosure enclosure, Structure& structure);

} // namespace tarnwick::msl
