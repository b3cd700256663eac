// Divides a call whose operand must be a constant.
#pragma once

#include <llvm/ADT/ArrayRef.h>

namespace llvm {
class CallBase;
class Constant;
} // namespace llvm

namespace tarnwick::msl {

// Replaces the call by a switch over the operand's value, which must be an integer: one call for
// each choice. For any other value nothing is called, and the result is zero.
void splitByValue(llvm::CallBase& call, unsigned operand, llvm::ArrayRef<llvm::Constant*> choices);

} // namespace tarnwick::msl
