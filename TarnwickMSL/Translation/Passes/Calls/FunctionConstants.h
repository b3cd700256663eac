// Function constants without a value (Metal Shading Language 3.1, 5.8). Their values, and those of
// the constants that are computed of them, are known when a pipeline is made. So each entry point
// computes them at its start, from specialisation constants, into variables of its own.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <llvm/ADT/ArrayRef.h>

#include <vector>

namespace llvm {
class Function;
class GlobalVariable;
class Module;
} // namespace llvm

namespace tarnwick::msl {

// Whether the value of a variable of the program is known at the start of an entry point only.
bool isLateConstant(const llvm::GlobalVariable& variable);
void makeLateConstant(llvm::GlobalVariable& variable);

// Makes the function constants late constants, which a first initialiser sets by calls of
// `msl.function_constant.TYPE`, and replaces the calls of is_function_constant_defined.
void defineFunctionConstants(llvm::Module& program,
                             const std::vector<ConstantSignature>& constants);

// Turns the late constants that each root uses into variables of the root. All functions must be
// inlined into the roots.
void makeConstantsLocal(llvm::Module& program, llvm::ArrayRef<llvm::Function*> roots);

} // namespace tarnwick::msl
