// What the optimiser is told about the machines that run shaders.
#pragma once

#include <llvm/Analysis/TargetTransformInfo.h>

namespace tarnwick::msl {

// Rounds of a longer unrolled loop cost more than they save where few of them run.
constexpr unsigned mostArrayRounds = 16;

// The analysis to register in place of the one of LLVM's targets.
llvm::TargetIRAnalysis shaderCosts();

} // namespace tarnwick::msl
