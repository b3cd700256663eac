// Copies and fills of memory, which shaders have no instruction for.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Copies and fills of memory become loads and stores. Run before pointers are resolved. Returns
// whether there were any.
bool expandMemoryCalls(llvm::Function& main);

} // namespace tarnwick::msl
