// Types by their lanes, and how memory is laid out.
#pragma once

#include <llvm/IR/DerivedTypes.h>

#include <cstdint>

namespace tarnwick::msl::reading {

// Whether a type in memory has explicit offsets and strides (buffers, push constants) or none
// (memory that only the invocation's group sees).
enum class Layout : std::uint8_t { plain, explicit_ };

// A type with the lanes of `shape` and another scalar.
llvm::Type* shapedLike(llvm::Type* shape, llvm::Type* scalar);
unsigned laneCount(llvm::Type* type); // 1 for a scalar

} // namespace tarnwick::msl::reading
