// What the optimiser may assume of the calls that the writer turns into instructions.
#pragma once

#include <llvm/ADT/StringRef.h>

namespace llvm {
class CallBase;
class Module;
} // namespace llvm

namespace tarnwick::msl {

// NAME of a call to `msl.NAME.SUFFIX`: "sample" of msl.sample.2d.f32; "" for any other call. The
// names with a point of their own (barrier.threadgroup) come without what stands after it.
llvm::StringRef builtInName(const llvm::CallBase& call);

// Whether its first operand is a texture's handle.
bool takesTexture(llvm::StringRef name);
// Whether its second one is a sampler's bits.
bool takesSampler(llvm::StringRef name);

// Gives the module's declarations of built-in calls their attributes: which ones touch memory, and
// which ones must not move under another condition (derivatives, barriers).
void describeBuiltIns(llvm::Module& module);

} // namespace tarnwick::msl
