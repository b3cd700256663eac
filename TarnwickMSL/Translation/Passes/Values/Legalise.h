// What LLVM's passes make that shader code has no form for, in terms of what it has.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Drops hints (assume, lifetimes, freeze) and expands intrinsics and integer widths that are not
// in docs/compiler.md's list. Throws TranslationError on what has no expansion.
void legalise(llvm::Function& main);

} // namespace tarnwick::msl
