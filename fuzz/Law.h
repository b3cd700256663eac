// Laws that must hold for every input.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace tarnwick::fuzz {

// Aborts unless `holds`; the fuzzer then keeps the input.
inline void law(bool holds, const char* words) {
    if (holds)
        return;
    std::fprintf(stderr, "Broken: %s\n", words);
    std::abort();
}

} // namespace tarnwick::fuzz
