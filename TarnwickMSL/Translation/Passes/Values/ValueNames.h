// Gives values the names of the program's variables.
#pragma once

namespace llvm {
class Module;
}

namespace tarnwick::msl {

// A value that is stored to a local variable gets its name, which LLVM's passes keep while the
// variable itself becomes a value. Does nothing if the module's context drops names.
void nameStoredValues(llvm::Module& module);

} // namespace tarnwick::msl
