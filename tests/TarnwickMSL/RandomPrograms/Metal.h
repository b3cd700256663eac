// Random programs as Metal programs.
#pragma once

#include <cstdint>
#include <string>

namespace tarnwick::trials {

// Input i of a program is trialInput(i), in the kernel for thread i, in the fragment function for
// the pixel i of a square of trialSide by trialSide, row by row.
inline constexpr std::uint32_t trialSide = 16;
inline constexpr std::uint32_t trialInputs = trialSide * trialSide;

// Small numbers first, then bits from everywhere.
constexpr std::uint32_t trialInput(std::uint32_t index) {
    return index < 64 ? index : index * 2654435761u;
}

// The whole program of a seed: `trial_kernel` writes uint values to buffer 0, `trial_vertex` covers
// the target with one triangle, `trial_fragment` gives color(0) as uint.
std::string metalSource(std::uint64_t seed);

// The same around a given body.
std::string metalSource(const std::string& body);

} // namespace tarnwick::trials
