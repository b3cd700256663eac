// Keeps the steps to an address beside its access.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Computes the address of each access directly before it, so that structured control flow passes
// numbers between blocks and never pointers. Steps in local memory show the size that they are
// multiples of.
void keepPointersNear(llvm::Function& main);

// Repeats the steps that a pass has moved to another block since.
void bringPointersBack(llvm::Function& main);

} // namespace tarnwick::msl
