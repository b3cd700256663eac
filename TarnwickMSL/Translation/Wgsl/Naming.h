// Names of values in the text.
#pragma once

#include <llvm/IR/Value.h>

#include <string>

namespace tarnwick::msl::wgsl {

// The name that the program gave the value or one that the value is chosen of; else LLVM's name for
// its operation, without numbers. Empty if there is no name.
std::string nameOf(const llvm::Value& value);

} // namespace tarnwick::msl::wgsl
