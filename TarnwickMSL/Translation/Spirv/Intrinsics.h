// LLVM's intrinsics.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/IntrinsicInst.h>

namespace tarnwick::msl::spirv {

// Throws CompilerFault on an unsupported intrinsic: the passes expand all that docs/compiler.md
// does not list.
Id writeIntrinsic(Body& body, const llvm::IntrinsicInst& call);

} // namespace tarnwick::msl::spirv
