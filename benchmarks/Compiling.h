// Times from source text to SPIR-V.
#pragma once

#include "benchmarks/Case.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::bench {

// A program of the bench did not compile; what() is the compiler's text.
struct ProgramError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct CompileTime {
    double ours = 0; // median, ms: the whole program's entry points through msl::compile, warm
    double twin = 0; // median, ms: shaderc with its optimiser on the twin, warm
};

// Throws ProgramError or TwinError. `rounds` of each, alternating.
CompileTime compileTime(const Case& one, int rounds);

// Times of the first compilation of a process, ms: one process for each round, which is this
// program itself with --first.
std::vector<double> firstCompileTimes(const std::string& self, const Case& one, int rounds);

// What such a process does: compiles standard input once and prints the milliseconds.
int printFirstCompileTime();

} // namespace tarnwick::bench
