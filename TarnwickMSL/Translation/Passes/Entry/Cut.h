// One function taken out of a program's module into a module of its own.
#pragma once

#include <memory>

namespace llvm {
class Function;
class Module;
} // namespace llvm

namespace tarnwick::msl {

// A new module in the same context that holds a copy of the function, as an internal one, and of
// the constants and declarations that it reaches; nothing else.
std::unique_ptr<llvm::Module> cut(const llvm::Function& function);

} // namespace tarnwick::msl
