// Random programs as C++: one translation unit with a function for each seed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::trials {

struct Seeds {
    std::uint64_t first = 1, last = 1; // both inclusive
};

// "A..B" or "A"; nothing when it is neither or B is below A.
std::optional<Seeds> seeds(std::string_view text);

// Source that defines `std::uint32_t nativeTrial(std::uint64_t seed, std::uint32_t input)` with C
// linkage. Compile it with the tree's root as include path.
std::string nativeSource(Seeds seeds);

} // namespace tarnwick::trials

extern "C" std::uint32_t nativeTrial(std::uint64_t seed, std::uint32_t input);
