// Pointers that are chosen at run time, which SPIR-V's logical addressing has no form for.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Turns each phi or select of pointers into numbers (which root, how far into it) and each access
// through one into accesses of the roots that it may be. Returns whether the code changed. Throws
// TranslationError on pointers that are kept in memory.
bool resolvePointers(llvm::Function& main);

// Gives each access its own steps to its place, right before it, so that structuring the control
// flow carries numbers from block to block and never a pointer.
void keepPointersNear(llvm::Function& main);

} // namespace tarnwick::msl
