// What must hold whatever the input.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace tarnwick::fuzz {

// Ends the process, by which the fuzzer keeps the input, unless `holds`.
inline void law(bool holds, const char* words) {
    if (holds)
        return;
    std::fprintf(stderr, "Broken: %s\n", words);
    std::abort();
}

} // namespace tarnwick::fuzz
