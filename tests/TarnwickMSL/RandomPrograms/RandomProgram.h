// Random programs whose values are known: the same text runs natively and on the GPU, and every
// value in it is exact, so both must agree bit for bit.
#pragma once

#include <cstdint>
#include <string>

namespace tarnwick::trials {

// The text of `uint trial(uint input)` and all that it needs, in the language that Metal and C++
// with Shim/NativeShim.h share. The same for the same seed, everywhere.
std::string randomProgram(std::uint64_t seed);

} // namespace tarnwick::trials
