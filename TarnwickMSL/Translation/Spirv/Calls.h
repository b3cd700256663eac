// The library's built-in calls that are not about textures (docs/compiler.md).
#pragma once

#include "TarnwickMSL/Translation/Spirv/Memory.h"

namespace tarnwick::msl::spirv {

// Gives the call's value; 0 if it has none. Throws TranslationError on a function that the stage
// does not have, CompilerFault on an unknown NAME.
Id writeBuiltInCall(Body& body, Memory& memory, llvm::StringRef name, const llvm::CallInst& call);

} // namespace tarnwick::msl::spirv
