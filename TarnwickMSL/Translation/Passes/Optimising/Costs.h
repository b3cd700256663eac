// The cost model of the machines that run shaders, for the optimiser of LLVM.
#pragma once

#include <llvm/Analysis/TargetTransformInfo.h>

namespace tarnwick::msl {

// Unrolling longer loops costs more than it saves if few of their rounds run.
constexpr unsigned mostArrayRounds = 16;

// The analysis to register in place of the one of LLVM's targets.
llvm::TargetIRAnalysis shaderCosts();

} // namespace tarnwick::msl
