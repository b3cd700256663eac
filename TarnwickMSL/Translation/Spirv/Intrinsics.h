// LLVM's intrinsics.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/IntrinsicInst.h>

namespace tarnwick::msl::spirv {

// Throws CompilerFault on an intrinsic that has no form here: the passes expand those that are not
// in docs/compiler.md's list.
Id writeIntrinsic(Body& body, const llvm::IntrinsicInst& call);

} // namespace tarnwick::msl::spirv
