// What the optimiser is told about the machines that run shaders.
#pragma once

#include <llvm/Analysis/TargetTransformInfo.h>

namespace tarnwick::msl {

// The analysis to register in place of the one of LLVM's targets.
llvm::TargetIRAnalysis shaderCosts();

} // namespace tarnwick::msl
