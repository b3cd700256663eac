// Converts the lanes of vector comparisons: true is all ones in Clang and 1 in Metal.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Requires unchanged code of the code generation.
void fixComparisonLanes(llvm::Function& function);

} // namespace tarnwick::msl
