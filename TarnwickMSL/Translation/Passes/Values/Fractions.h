// Simplifies fractions that are below one in any case.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// `x - floor(x)` rounds up to one only for x in (-2^-25, 0), and `fract` of the library limits it.
// This removes the limit where x is provably elsewhere: it is non-negative, or a multiple of whole
// numbers, as in most hashes. Returns whether the code changed.
bool trimFractions(llvm::Function& function);

} // namespace tarnwick::msl
