// The lanes of vector comparisons: Clang's are all ones where true, Metal's are 1.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Works on code as it comes from code generation, before anything has rewritten it.
void fixComparisonLanes(llvm::Function& function);

} // namespace tarnwick::msl
