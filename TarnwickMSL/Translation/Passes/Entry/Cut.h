// Copies one entry point into its own module.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Copies the function of the entry point, as an internal function, and the constants and
// declarations that it uses into a new module of the same context. Sets the facts of the signature
// about the whole shader; `main` is null. Throws TranslationError if the function has no body.
ShaderModule cut(const llvm::Module& program, const EntrySignature& entry);

} // namespace tarnwick::msl
