// Operations of the threads of a threadgroup or SIMD-group together: barriers, fences, and the
// exchange of values.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

namespace tarnwick::msl::spirv {

// `call` has the standard library's numbers for the scope and the kinds of memory.
void writeBarrier(Body& body, bool waits, const llvm::CallInst& call);

// `name` is the name of the call without "simd_".
Id writeSimdCall(Body& body, llvm::StringRef name, const llvm::CallInst& call);

} // namespace tarnwick::msl::spirv
