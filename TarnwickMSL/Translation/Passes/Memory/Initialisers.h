// Constants whose values need code.
#pragma once

#include <llvm/ADT/ArrayRef.h>

namespace llvm {
class Function;
class Module;
} // namespace llvm

namespace tarnwick::msl {

class Optimiser;

// Evaluates the code that Clang runs before a program to set its constants. No code runs before a
// shader: throws TranslationError for a constant that cannot be evaluated, which would be zero. The
// code that depends on function constants is called at the start of each root instead.
void foldInitialisers(llvm::Module& program, llvm::ArrayRef<llvm::Function*> roots,
                      Optimiser& optimiser);

} // namespace tarnwick::msl
