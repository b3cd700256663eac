// Indices of atomic values in memory that is addressed in bytes.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Turns the address of an atomic operation, a sum of bytes of which the compiler cannot see that it
// is a multiple of the value's size, into an index of values. Atomic values have their natural
// alignment (Metal Shading Language 3.1, 2.6).
void indexAtomics(llvm::Function& main);

} // namespace tarnwick::msl
