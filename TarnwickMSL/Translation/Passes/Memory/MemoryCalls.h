// Expands copies and fills of memory, for which shaders have no instruction.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Whether a copy becomes a loop.
bool hasLongCopies(const llvm::Function& main);

// Turns copies and fills into loads and stores. Must run before pointers are resolved. Returns
// whether there were any.
bool expandMemoryCalls(llvm::Function& main);

} // namespace tarnwick::msl
