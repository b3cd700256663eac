// Replaces tables whose elements have two values.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Replaces the access to a constant table of at most 32 elements, in each lane of which only two
// values occur (such as a list of corners), by a selection by a bit of a number. Returns whether
// the code changed.
bool replaceTwoValuedTables(llvm::Function& main);

} // namespace tarnwick::msl
