// One entry point in a module of its own.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Copies the entry point's function, as an internal one, and the constants and declarations that
// it reaches into a new module of the same context. Sets what the signature says about the whole
// shader; `main` is null. Throws TranslationError if the function has no body.
ShaderModule cut(const llvm::Module& program, const EntrySignature& entry);

} // namespace tarnwick::msl
