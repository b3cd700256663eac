// Rewrites comparisons of sign-extended integers that the packaged CPU driver computes wrongly.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Turns signed comparisons of order of 64 bits into unsigned ones of the operands with their signs
// flipped, if an operand may be a sign-extended integer of 32 bits.
void rewriteExtendedComparisons(llvm::Function& main);

} // namespace tarnwick::msl
