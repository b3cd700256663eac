// Random programs as Metal programs.
#pragma once

#include <cstdint>
#include <string>

namespace tarnwick::trials {

// Input i of a program is trialInput(i), in the kernel for thread i, in the fragment function for
// the pixel i of a square of trialSide by trialSide, row by row.
inline constexpr std::uint32_t trialSide = 16;
inline constexpr std::uint32_t trialInputs = trialSide * trialSide;
inline constexpr std::uint32_t trialGroup = 64; // threads of a threadgroup

// Of each input: its own piece of device memory, zero at first. Of each group: its atomic numbers.
inline constexpr std::uint32_t memoryBytes = 4096;
inline constexpr std::uint32_t groupCounters = 8;
inline constexpr std::uint32_t constantWords = 256;

// Small numbers first, then bits from everywhere.
constexpr std::uint32_t trialInput(std::uint32_t index) {
    return index < 64 ? index : index * 2654435761u;
}
constexpr std::uint32_t constantWord(std::uint32_t index) {
    return index * 2246822519u ^ 0x5bd1e995u;
}

// What a program's text defines: `uint trial(uint input)`; the same with a parameter `World world`
// of memory and textures; or GROUP_PROGRAM, phases of the threads of a group, for kernels only.
enum class Form : std::uint8_t { plain, world, group };
Form formOf(const std::string& body);

// Where programs run. Those of groups run in a kernel, whatever the stages.
struct Stages {
    bool kernel = true, fragment = true;
};

// The whole program of those stages: `trial_kernel` writes uint values to buffer 0, and the number
// of threads of a SIMD-group after them if the form is `group`. `trial_vertex` covers the target
// with one triangle, `trial_fragment` gives color(0) as uint. Buffer 1 is memory (world) or
// counters (group), buffer 2 has the constant words; textures 0 to 5 are those of worldTextures
// (Trial.cpp).
std::string metalSource(const std::string& body, Stages stages = {});

} // namespace tarnwick::trials
