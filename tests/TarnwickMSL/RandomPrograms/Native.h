// Random programs as C++: one translation unit with a function for each.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::trials {

struct Seeds {
    std::uint64_t first = 1, last = 1; // both inclusive
};

// "A..B" or "A"; nothing when it is neither or B is below A.
std::optional<Seeds> seeds(std::string_view text);

// Programs of seeds, in their order.
std::vector<std::string> bodiesOf(Seeds seeds);

// Source that defines nativeTrial(), below, with C linkage. Compile it with the tree's root as
// include path.
std::string nativeSource(const std::vector<std::string>& bodies);

} // namespace tarnwick::trials

// Runs a program, counted from 0, on all inputs, in the form of Metal.h: `results` takes
// trialResults numbers. `simdWidth` is the number of threads of a SIMD-group on the GPU.
extern "C" void nativeTrial(std::uint64_t program, std::uint32_t simdWidth, std::uint32_t* results);
