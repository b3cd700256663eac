// What a program says of unrolling a loop: `#pragma unroll`, `#pragma nounroll`, `#pragma clang
// loop`.
#pragma once

#include "TarnwickMSL/Translation/LoopControl.h"

namespace llvm {
class Loop;
class LoopInfo;
class ScalarEvolution;
} // namespace llvm

namespace tarnwick::msl {

// Of the metadata of a loop, on the branch of its latch, keeps the hints and marks them as the
// program's: LLVM removes its own when it follows them.
void keepUnrollHints(llvm::Instruction& latch);

// Removes hints that LLVM would follow too far: to unroll a loop without a known number of rounds,
// or to more than `largestHinted` instructions. Returns whether LLVM can follow a hint that is
// left.
bool limitUnrollHints(llvm::LoopInfo& loops, llvm::ScalarEvolution& evolution);

// What to ask of the driver for a loop that was not unrolled: to unroll it only if its number of
// rounds is not known here.
LoopControl loopControl(const llvm::Loop& loop, llvm::ScalarEvolution& evolution);

// Marks a phi of the header of the loop, if it has one.
void setLoopControl(const llvm::Loop& loop, LoopControl control);

} // namespace tarnwick::msl
