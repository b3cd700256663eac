// Expands code that the passes of LLVM produce and that SPIR-V cannot express.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Removes hints (assume, lifetimes, freeze) and expands intrinsics and integer widths that are not
// listed in docs/compiler.md. Throws TranslationError on code without an expansion.
void legalise(llvm::Function& main);

} // namespace tarnwick::msl
