// Turns short arrays into values.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Replaces each access at a changing index to a local array or a table of at most 8 elements by a
// choice of all its elements, so that the array needs no memory. Variables with another access that
// is not known, or to a longer array, are left as they are. Returns whether the code changed.
bool chooseFromShortArrays(llvm::Function& main);

} // namespace tarnwick::msl
