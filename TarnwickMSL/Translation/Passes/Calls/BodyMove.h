// Inlines the only call of a function without a copy of its body.
#pragma once

namespace llvm {
class CallBase;
}

namespace tarnwick::msl {

// Whether the call is the only use of an internal function with a body, which has no debug
// locations: inlining those changes each instruction.
bool mayMoveBody(const llvm::CallBase& call);

// Moves the body of the called function to the place of the call, which is removed. The function is
// a declaration without uses afterwards. Requires mayMoveBody.
void moveBody(llvm::CallBase& call);

} // namespace tarnwick::msl
