// Moves the test of a loop from its end to its start, where drivers count the rounds.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

class Optimiser;

// A loop that only its latch leaves gets its test in the header if the first round is known to run:
// `i < N` on a phi with a constant start and step if the number of rounds is constant, otherwise
// the latch's own comparison on the phi of the compared value. Requires the flow of normaliseFlow.
void moveTestsToHeaders(llvm::Function& main, Optimiser& optimiser);

} // namespace tarnwick::msl
