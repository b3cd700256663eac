// Phis that need not be two.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Structured loops carry a value twice where it goes on into the next round and also out of the
// loop: the two differ only where one of them is undefined. The CPU driver pays for each with a
// masked store a round, so such a pair becomes one phi.
void mergePhis(llvm::Function& main);

} // namespace tarnwick::msl
