// Moves one entry point into its own module.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Moves the function of the entry point, as an internal function, into a new module of the same
// context, and copies the constants and declarations that it uses. No other code may use it. Sets
// the facts of the signature about the whole shader; `main` is null. Throws TranslationError if the
// function has no body.
ShaderModule cut(llvm::Module& program, const EntrySignature& entry);

} // namespace tarnwick::msl
