// Widens integers whose width SPIR-V does not have (i4 of a bit cast, i33 of the sum of a loop).
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Afterwards every integer has 1, 8, 16, 32 or 64 bits, and no single bit is reversed or counted.
// Throws TranslationError above 64.
void promoteOddIntegers(llvm::Function& main);

} // namespace tarnwick::msl
