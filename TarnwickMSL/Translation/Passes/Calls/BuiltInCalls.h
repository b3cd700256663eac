// Tells the optimiser about the calls that the writer turns into instructions.
#pragma once

#include <llvm/ADT/StringRef.h>

#include <optional>

namespace llvm {
class CallBase;
class Module;
} // namespace llvm

namespace tarnwick::msl {

// NAME of a call to `msl.NAME.SUFFIX`: "sample" for msl.sample.2d.f32; "" for any other call. A
// name is cut at its own point: "barrier" for barrier.threadgroup.
llvm::StringRef builtInName(const llvm::CallBase& call);

// Whether its first operand is the handle of a texture.
bool takesTexture(llvm::StringRef name);
// Whether it is an atomic operation on a texel, and whether it may store to a texture.
bool isTexelAtomic(llvm::StringRef name);
bool changesTexture(llvm::StringRef name);
// The operand that is the level of the texel, of calls that read or write one.
std::optional<unsigned> levelOperand(llvm::StringRef name);
// Whether its second operand is the bits of a sampler.
bool takesSampler(llvm::StringRef name);

// Sets the attributes of the declarations of built-in calls: whether they access memory, and
// whether they must not move under another condition (derivatives, barriers).
void describeBuiltIns(llvm::Module& module);

} // namespace tarnwick::msl
