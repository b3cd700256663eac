// The cost model of the machines that run shaders, for the optimiser of LLVM.
#pragma once

#include <llvm/Analysis/TargetTransformInfo.h>

namespace tarnwick::msl {

// Unrolling longer loops costs more than it saves if few of their rounds run.
constexpr unsigned mostArrayRounds = 16;

// An attribute of a function: how many copies of it inlining makes in the program. Default: 1.
inline constexpr llvm::StringLiteral copiesMark = "msl.copies";

// An attribute of an entry point, then of main: it has loops that were short before the functions
// that they call were inlined.
inline constexpr llvm::StringLiteral unrollsMark = "msl.unrolls";

// The analysis to register in place of the one of LLVM's targets.
llvm::TargetIRAnalysis shaderCosts();

} // namespace tarnwick::msl
