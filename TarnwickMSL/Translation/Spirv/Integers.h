// LLVM's intrinsics on integers of any width. Most of Vulkan's bit operations are limited to 32
// bits (Vulkan 1.3, Appendix A).
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/IntrinsicInst.h>

namespace tarnwick::msl::spirv {

// Returns 0 for any other intrinsic.
Id writeIntegerIntrinsic(Body& body, const llvm::IntrinsicInst& call);

} // namespace tarnwick::msl::spirv
