// Calls of LLVM's intrinsics and of the library's built-in functions that are no textures and no
// atomic operations.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Memory.h"

#include <llvm/IR/IntrinsicInst.h>

#include <optional>

namespace tarnwick::msl::wgsl {

// Whether NAME is a call of a function of numbers alone.
bool isPlainFunction(llvm::StringRef name);

// Intrinsics.cpp
Expression writeIntrinsic(Body& body, const llvm::IntrinsicInst& call);

// Absent if the call is a statement. Throws TranslationError on functions that WGSL lacks.
std::optional<Expression> writeBuiltInCall(Body& body, llvm::StringRef name,
                                           const llvm::CallInst& call);

} // namespace tarnwick::msl::wgsl
