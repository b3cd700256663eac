// The library's built-in calls that are not about textures (docs/compiler.md).
#pragma once

#include "TarnwickMSL/Translation/Spirv/Memory.h"

namespace tarnwick::msl::spirv {

// The call's value; 0 where it has none. Throws TranslationError on a NAME that is not known.
Id writeBuiltInCall(Body& body, Memory& memory, Stage stage, llvm::StringRef name,
                    const llvm::CallInst& call);

} // namespace tarnwick::msl::spirv
