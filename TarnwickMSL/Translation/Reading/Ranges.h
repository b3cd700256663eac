// The values that an integer may have.
#pragma once

#include <llvm/IR/ConstantRange.h>
#include <llvm/IR/DataLayout.h>
#include <llvm/IR/Value.h>

namespace tarnwick::msl::reading {

// All values of an integer, and perhaps more. Unlike LLVM's computeConstantRange, it follows sums
// and quotients of choices: `((x ? 24 : 32) - 24) / 8` is 0 or 1.
llvm::ConstantRange rangeOf(const llvm::Value& value, const llvm::DataLayout& layout);

} // namespace tarnwick::msl::reading
