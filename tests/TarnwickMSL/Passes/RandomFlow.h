// Functions whose blocks jump anywhere.
#pragma once

#include <cstdint>
#include <string>

namespace tarnwick::msl::test {

// Assembly of `i32 @f(i32 %a, i32 %b)`: a number is stirred in each of the blocks, and its bits
// choose the next one by branches and switches, loops of any form included. It ends after `fuel`
// blocks at the latest (0: only where the blocks themselves return).
std::string randomFlow(std::uint32_t seed, std::uint32_t fuel);

} // namespace tarnwick::msl::test
