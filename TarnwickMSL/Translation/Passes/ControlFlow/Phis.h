// Merges pairs of phis in loops.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// A structured loop has two phis for a value that is used both in the next round and after the
// loop. They differ only where one of them is undefined. The CPU driver executes a masked store per
// phi and round, so such a pair becomes one phi.
void mergePhis(llvm::Function& main);

} // namespace tarnwick::msl
