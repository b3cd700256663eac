// How a value is used in the text.
#pragma once

#include <llvm/ADT/SmallVector.h>
#include <llvm/IR/Value.h>

namespace tarnwick::msl::wgsl {

// The uses of a value by instructions that are written at their own place (Reading/Deferred.h).
llvm::SmallVector<const llvm::Use*, 4> usesIn(const llvm::Value& value);

// Whether users of the value, a phi or one that needs a variable, take most of its bits as signed.
bool prefersSigned(const llvm::Value& value);

} // namespace tarnwick::msl::wgsl
