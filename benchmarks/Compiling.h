// Times of compiling from source text to SPIR-V.
#pragma once

#include "benchmarks/Case.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::bench {

// A program of the benchmark does not compile. what() is the text of the compiler.
struct ProgramError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct CompileTime {
    double ours = 0; // median, ms: the whole program's entry points through msl::compile, warm
    double twin = 0; // median, ms: shaderc with its optimiser on the twin, warm; 0 without a twin
    double otherNumber = 0; // median, ms: ours for the text compiled last with one other number
};

// Compiles each `rounds` times, alternating. Throws ProgramError or TwinError.
CompileTime compileTime(const Case& one, int rounds);

// The table of the compiler's steps with their processor time for all programs, as the worker
// prints it. Throws ProgramError.
std::string stepTimes(const std::vector<Case>& all);

// Times of the first compilation of a process, in ms. Each round starts a process of this program
// with --first.
std::vector<double> firstCompileTimes(const std::string& self, const Case& one, int rounds);

// The work of such a process: compiles standard input once and prints the milliseconds.
int printFirstCompileTime();

} // namespace tarnwick::bench
