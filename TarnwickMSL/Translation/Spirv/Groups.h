// What the threads of a threadgroup or SIMD-group do together: barriers, fences, and the values
// that they tell each other.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

namespace tarnwick::msl::spirv {

// `call` has the standard library's numbers for the scope and the kinds of memory.
void writeBarrier(Body& body, bool waits, const llvm::CallInst& call);

// `name` is what follows "simd_".
Id writeSimdCall(Body& body, llvm::StringRef name, const llvm::CallInst& call);

} // namespace tarnwick::msl::spirv
