// Normalises control flow, so that loops can be counted and structured.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

class Optimiser;

// Leaves one return, no switch and no unreachable code; loops have one entry, one latch and an
// exit.
void normaliseFlow(llvm::Function& main, Optimiser& optimiser);

// Whether the code has no conditional branch.
bool isPlain(const llvm::Function& main);

// Replaces conditional branches whose two targets are the same block.
void dropEmptyBranches(llvm::Function& main);

} // namespace tarnwick::msl
