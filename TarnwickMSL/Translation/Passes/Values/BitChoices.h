// Rewrites choices of bits that LLVM 15, under the packaged CPU driver, compiles wrongly.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Turns `(a & ~mask) | (b & mask)`, also as a copied sign, into the equal `(a | mask) - (~b &
// mask)` if a selection or a phi may then choose between the result and a or b. If the mask is not
// constant, also `(a & ~mask) | b`, which may become such a choice in the driver.
void rewriteBitChoices(llvm::Function& main);

} // namespace tarnwick::msl
