// Resolves pointers selected at run time, which logical addressing of SPIR-V cannot express.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Turns each phi or select of pointers into numbers (index of the root, offset in it), and each
// access through one into accesses of all possible roots. Returns whether the code changed. Throws
// TranslationError on pointers stored in memory.
bool resolvePointers(llvm::Function& main);

// Computes the address of each access directly before it, so that structured control flow passes
// numbers between blocks and never pointers.
void keepPointersNear(llvm::Function& main);

} // namespace tarnwick::msl
