// Exits of a loop that meet behind short blocks.
#pragma once

#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Lets exits of a loop go to the block where they meet at once, if their tests follow one another:
// the short blocks between run in each round, or are empty. `flatten` joins the tests then.
bool shortenWaysOut(llvm::Function& main);

} // namespace tarnwick::msl
