// Integers of widths that no shader has (i4 of a bit cast, i33 of a loop's sum), in wider ones.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Afterwards every integer has 1, 8, 16, 32 or 64 bits. Throws TranslationError past 64.
void promoteOddIntegers(llvm::Function& main);

} // namespace tarnwick::msl
