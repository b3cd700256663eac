// Seeds in processes of their own: a driver may never come back from a program, or die of it.
#pragma once

#include "tests/TarnwickMSL/RandomPrograms/Native.h"

#include <chrono>
#include <functional>
#include <string>

namespace tarnwick::trials {

// What there is to say about a seed: one line, empty where all is well.
using Check = std::function<std::string(std::uint64_t seed)>;

// What a child said of a seed, and its processor time: the driver's, since programs are compiled in
// another process.
struct Heard {
    std::uint64_t seed = 0;
    std::string line;
    std::chrono::nanoseconds time{};
};

// Checks one seed after the other in child processes and tells `hear` here, in their order. `start`
// runs once in each child. A seed that keeps its child busy for longer than `limit` (processor
// time, or twenty times that by the clock), or that ends it, is told so by a line of its own; the
// next child goes on behind it. Call it while the process has one thread. Blocks.
void watch(Seeds seeds, std::chrono::seconds limit, const std::function<Check()>& start,
           const std::function<void(const Heard& heard)>& hear);

} // namespace tarnwick::trials
