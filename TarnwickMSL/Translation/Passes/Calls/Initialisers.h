// Constants whose values need code.
#pragma once

namespace llvm {
class Module;
}

namespace tarnwick::msl {

class Optimiser;

// Evaluates the code that Clang runs before a program to set its constants. No code runs before a
// shader: throws TranslationError for a constant that cannot be evaluated, which would be zero.
void foldInitialisers(llvm::Module& program, Optimiser& optimiser);

} // namespace tarnwick::msl
