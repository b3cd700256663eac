// Fractions that are below one by themselves.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// `x - floor(x)` rounds up to one only where x lies between -2^-25 and 0, and the library's fract
// keeps it below. Takes that step away where x is known to be elsewhere: it is non-negative, or a
// multiple of whole numbers, as in most hashes. Gives whether anything changed.
bool trimFractions(llvm::Function& function);

} // namespace tarnwick::msl
