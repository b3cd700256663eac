// Pointers that may point to one of several members of a variable.
#pragma once

#include <llvm/ADT/ArrayRef.h>
#include <llvm/IR/DataLayout.h>
#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// Whether the offsets, a multiple of `step` bytes apart, are of elements of one array in the type,
// or of arrays in an array. An index that adds `largest` bytes for each unit must count elements of
// them, too, and not those of an array of records around them.
bool areOfOneArray(llvm::Type* type, llvm::ArrayRef<std::int64_t> offsets, std::int64_t step,
                   std::int64_t largest, const llvm::DataLayout& layout);

// Makes each local, threadgroup or constant variable, of which a chosen pointer may point to
// members that are not elements of one array, an array of numbers: an index into one member would
// not reach the others.
void flattenMixedVariables(llvm::Function& main);

} // namespace tarnwick::msl
