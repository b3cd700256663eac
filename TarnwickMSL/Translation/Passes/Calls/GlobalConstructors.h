// The functions that Clang runs before a program to set its constants, in their order.
#pragma once

#include <vector>

namespace llvm {
class Function;
class Module;
} // namespace llvm

namespace tarnwick::msl {

std::vector<llvm::Function*> constructors(const llvm::Module& program);
void setConstructors(llvm::Module& program, const std::vector<llvm::Function*>& functions);

} // namespace tarnwick::msl
