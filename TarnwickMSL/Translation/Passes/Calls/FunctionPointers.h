// Function pointers become numbers, and calls through them become calls of one function that
// branches on the number to every function that the pointer may point to. If inlining makes the
// number a constant, one call remains.
#pragma once

#include <llvm/ADT/StringRef.h>

namespace llvm {
class Function;
class Module;
} // namespace llvm

namespace tarnwick::msl {

// The names of the functions that branch begin with it.
inline constexpr llvm::StringLiteral callByNumber = "msl.call_by_number";

// Replaces the functions whose address the program takes by numbers from 1, in instructions and in
// tables; a call through a pointer branches to those of the type that it calls, and gives zero for
// any other number. The attribute `visible` of a function counts as its address.
void numberFunctions(llvm::Module& program);

// Makes numbers of the pointers that numberFunctions left: those that are chosen or kept in local
// memory. Required after memory is made values. Returns whether the code is changed.
bool chooseNumbers(llvm::Function& main);

} // namespace tarnwick::msl
