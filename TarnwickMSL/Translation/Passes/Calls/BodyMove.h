// Inlines calls faster than LLVM's inliner: the only call of a function without a copy of its body,
// and calls of functions of one block.
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

// Whether the called function is one block without locals.
bool mayCopyBlock(const llvm::CallBase& call);

// Copies the called function's block to the place of the call, which is removed. Unlike LLVM's
// inliner, simplifies nothing: the caller is cleaned afterwards. Requires mayCopyBlock.
void copyBlock(llvm::CallBase& call);

} // namespace tarnwick::msl
