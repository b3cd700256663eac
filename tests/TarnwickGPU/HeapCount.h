// Counts the calls of operator new.
#pragma once

#include <cstddef>

namespace tarnwick::tests {

void startHeapCount();   // of this thread
std::size_t heapCount(); // calls since then; ends the count

// The calls during 16 frames, after 10 to warm up.
template <typename Frame> std::size_t heapCountOnceWarm(const Frame& frame) {
    for (int warming = 0; warming < 10; ++warming)
        frame();
    startHeapCount();
    for (int measured = 0; measured < 16; ++measured)
        frame();
    return heapCount();
}

} // namespace tarnwick::tests
